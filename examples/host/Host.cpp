// A console program built on Toolkit. It starts the library, reads its settings, logs to a file,
// loads plug-ins, searches a text file on a worker thread, and stops.
//
// With -serve it searches nothing and keeps running. A host that is started later with a plug-in's
// command hands its command line over to the serving host and exits. The serving host runs the
// command and reports the outcome; the result file appears when it is complete. Usage.cpp lists all
// options.

#include <wx/log.h>
#include <wx/utils.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>
#include <toolkit/Toolkit.h>
#include <vector>

#include "CommandLine.h"
#include "CommandServer.h"
#include "Facts.h"
#include "HandOver.h"
#include "HostLog.h"
#include "Options.h"
#include "Restart.h"
#include "TextSearch.h"
#include "Usage.h"

using namespace Toolkit;

namespace {

// What the host does when the library starts and stops. This module starts after the library's own
// module and stops before it, so both functions may use paths, versions and the log.
class HostModule : public LibModule {
public:
    void Initialize() override
    {
        m_startTicks = GetTickCount();
        m_forwarder = std::make_unique<WxLogForwarder>();
    }

    void Release() override
    {
        TOOLKIT_LOG(SeverityInfo) << L"Stopping after " << GetTickCount() - m_startTicks << L" ms"
                                  << ILogger::c_strLogToken3;
        m_forwarder.reset();
    }

private:
    unsigned int m_startTicks = 0;
    // Forwards wxWidgets' log messages to the library's log.
    std::unique_ptr<WxLogForwarder> m_forwarder;
};

Text MakeDefaultSettingsPath()
{
    Text path;
    PathManager::AppendPath(path, PathManager::GetInstance()->GetConfigurationPath(), L"host.ini");
    return path;
}

// A relative name in the settings is relative to the folder of the settings file.
Text ResolveBesideSettings(const Text& settingsPath, const Text& name)
{
    if (name.substr(0, 1) == PathManager::GetInstance()->GetPathSeparator())
        return name;

    Text volume, directory, settingsName, extension;
    PathManager::SplitPath(settingsPath, volume, directory, settingsName, extension);
    PathManager::AppendPath(directory, name);
    return directory;
}

bool ParseLevel(const Text& text, LogSeverity& level)
{
    if (text.size() != 1 || text[0] < L'0' || text[0] > L'4')
        return false;
    level = static_cast<LogSeverity>(text.ToInt32());
    return true;
}

Text FindPlugInsFolder(const Options& options, const IniFile& settings, const Text& settingsPath)
{
    const Text folder = settings.GetValue(L"PlugIns", L"folder", Text::Empty());
    return options.GetValue(L"plugins", folder.empty()
                                            ? PathManager::GetInstance()->GetPluginsPath()
                                            : ResolveBesideSettings(settingsPath, folder));
}

void PrintCommands(const PlugIns& plugIns)
{
    for (const HostPlugIn::Command* const command : plugIns.GetCommands())
        PrintRow(Text(L"Command ") + command->name, command->help);
}

// Searches on a worker thread and reports the result.
int Search(const Text& path, const Text& wanted, bool isQuiet)
{
    TextSearch search(path, wanted);
    if (!search.Run())
        return Fail(L"Cannot start a thread.");
    search.Wait();
    if (!search.HasReadFile())
        return Fail(L"Cannot read the text to search: " + path);

    const Text summary = StringConvert::UStringFromUint32(search.GetHitCount()) + L" of " +
                         StringConvert::UStringFromUint32(search.GetLineCount()) +
                         L" lines contain \"" + wanted + L"\".";
    TOOLKIT_LOG(SeverityInfo) << summary << ILogger::c_strLogToken3;
    if (!isQuiet)
        Print(summary);
    return EXIT_SUCCESS;
}

int SearchText(const Options& options, const IniFile& settings, const Text& settingsPath)
{
    const Text textName = settings.GetValue(L"Text", L"file", Text::Empty());
    if (textName.empty())
        return Fail(L"No text to search: [Text] file is missing in " + settingsPath);
    const Text wanted = settings.GetValue(L"Text", L"find", Text::Empty());
    return Search(ResolveBesideSettings(settingsPath, textName), options.GetValue(L"find", wanted),
                  options.IsDefined(L"quiet"));
}

int Serve(const PlugIns& plugIns, const Text& startLine, bool isRestart)
{
    if (isRestart)
        FinishRestart();
    switch (CommandServer(plugIns).Run()) {
    case CommandServer::ServeResult::Quit:
        return EXIT_SUCCESS;
    case CommandServer::ServeResult::Restart:
        return BeginRestart(startLine) ? EXIT_SUCCESS : Fail(L"Cannot restart the host.");
    case CommandServer::ServeResult::Failed:
        break;
    }
    return Fail(L"Cannot accept commands at " + GetServicePath());
}

// Runs the host with its own options instead of a command. `startLine` is empty unless the host
// serves.
int Run(const Options& options, PlugIns& plugIns, const Text& startLine)
{
    const Text settingsPath = options.GetValue(L"config", MakeDefaultSettingsPath());
    const IniFile settings(settingsPath);
    if (!settings.IsLoaded())
        return Fail(L"Cannot read the settings: " + settingsPath);

    LogSeverity level = SeverityInfo;
    const Text levelString = options.GetValue(L"level", settings.GetValue(L"Log", L"level", L"2"));
    if (!ParseLevel(levelString, level))
        return Fail(L"The log level must be a number from 0 to 4, not \"" + levelString + L"\"");

    const FileLogger* const log = StartLog(level, settings.GetValue(L"Log", L"name", Text::Empty()),
                                           settings.GetUint32(L"Log", L"sizeLimit", 1'000'000));
    TOOLKIT_LOG(SeverityInfo) << L"Settings read: " << settingsPath << ILogger::c_strLogToken3;
    wxLogMessage("Process %lu of the user %s", wxGetProcessId(), wxGetUserId());
    plugIns.Load(FindPlugInsFolder(options, settings, settingsPath));

    if (!options.IsDefined(L"quiet")) {
        PrintPaths();
        PrintSystem();
        PrintRow(L"Settings", settingsPath);
        PrintRow(L"Log", DescribeLogPath(*log));
        PrintCommands(plugIns);
    }
    return startLine.empty() ? SearchText(options, settings, settingsPath)
                             : Serve(plugIns, startLine, options.IsDefined(L"restart"));
}

// Prints whether the serving host has received the line, and returns the exit code. The serving
// host reports how the command ends.
int Report(HandOverResult result)
{
    switch (result) {
    case HandOverResult::HandedOver:
        Print(L"Handed over to the serving host.");
        return EXIT_SUCCESS;
    case HandOverResult::NoOtherHost:
        return Fail(L"No host is serving. Start one with -serve.");
    case HandOverResult::NotAccepted:
        break;
    }
    return Fail(L"Another host is running and does not accept commands.");
}

// Paths may be relative to the working directory of this process, so the line that is sent names
// that directory with "-from".
int HandOverCommand(Text line)
{
    std::error_code error;
    const std::filesystem::path directory = std::filesystem::current_path(error);
    if (error || !AppendToken(line, L"-from") ||
        !AppendToken(line, UTF8::ToUNICODE(directory.native())))
        return Fail(L"The working directory cannot be handed over.");
    const Text lineError = CommandLine(HostPlugIn::Command{}, line).GetError();
    if (!lineError.empty())
        return ComplainWithUsage(L"The command cannot be handed over: " + lineError);
    return Report(SendToServingHost(line));
}

std::vector<Text> SplitLine(const Text& line)
{
    std::vector<Text> words;
    CmdLineParser::Tokenize(line, words);
    return words;
}

int StartServer(const Text& line, PlugIns& plugIns)
{
    const HandOverResult result = SendToServingHost(c_serve);
    return result == HandOverResult::NoOtherHost ? Run(Options(SplitLine(line)), plugIns, line)
                                                 : Report(result);
}

// Runs in two processes. The one that the user starts sends the line to the serving host, which
// stops and starts a new host with the same option. The new host waits until the old one has ended,
// finds no serving host and serves in its place.
int RestartServer(PlugIns& plugIns)
{
    const HandOverResult result = SendToServingHost(c_restart);
    if (result != HandOverResult::NoOtherHost)
        return Report(result);
    const Text line = ReadSavedLine();
    return Run(Options(SplitLine(line + L" " + c_restart)), plugIns, line);
}

// Starts in the mode that the options select. `line` holds the same options as one string.
int StartSelectedMode(const Options& options, const Text& line, PlugIns& plugIns)
{
    if (options.IsDefined(L"serve"))
        return StartServer(line, plugIns);
    if (options.IsDefined(L"quit"))
        return Report(SendToServingHost(c_quit));
    if (options.IsDefined(L"restart"))
        return RestartServer(plugIns);
    return Run(options, plugIns, Text());
}

int Start(const std::vector<Text>& words, PlugIns& plugIns)
{
    Text line;
    bool isComplete = true;
    for (const Text& word : words)
        isComplete = AppendToken(line, word) && isComplete;

    const bool isCommand = !GetCommandWord(line).empty();
    const Options options(isCommand ? std::vector<Text>() : words);
    if (options.IsDefined(L"help") || options.IsDefined(L"-help") || options.IsDefined(L"h")) {
        PrintUsage();
        return EXIT_SUCCESS;
    }
    if (!options.GetError().empty())
        return ComplainWithUsage(options.GetError());
    if ((isCommand || options.IsDefined(L"serve")) && !isComplete)
        return Fail(L"No argument may begin with a quote, or contain both spaces and quotes.");
    return isCommand ? HandOverCommand(line) : StartSelectedMode(options, line, plugIns);
}

} // namespace

int main(int argc, char** argv)
{
    PlugIns plugIns; // unloaded after all modules have been released
    HostModule hostModule;
    LibModuleManager* const modules = LibModuleManager::GetInstance();

    modules->Register(&hostModule);
    modules->Initialize(true);
    std::vector<Text> words;
    for (int i = 1; i < argc; ++i)
        words.push_back(UTF8::ToUNICODE(argv[i]));
    const int exitCode = Start(words, plugIns);
    // Keeps the single-instance lock until the log is complete: the next host overwrites the log.
    const smart_ptr<SingleApplicationInstance> instance = SingleApplicationInstance::GetInstance();
    modules->Release(true);
    modules->Unregister(&hostModule);
    return exitCode;
}
