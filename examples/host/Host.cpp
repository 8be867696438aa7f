// A console program on Toolkit. It starts the library, reads its settings, logs to a file, searches
// a text on a worker thread, and stops:
//
//     host [-config <settings file>] [-level <0 to 4>] [-find <text>] [-quiet]
//
// Without -config the settings are host.ini in the configuration path. -level and -find replace
// what the settings say; with -quiet the screen shows only what goes wrong.

#include <wx/log.h>
#include <wx/utils.h>
#include <wx/version.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <toolkit/Toolkit.h>

#include "TextSearch.h"

using namespace Toolkit;

namespace {

using Text = TString<wchar_t>;

// What the host adds to the start and the stop of the library. It comes after the library's own
// module at the start and before it at the stop: paths, versions and the log are there in both.
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
    // Brings what wxWidgets has to say into the log.
    std::unique_ptr<WxLogForwarder> m_forwarder;
};

// What the command line may say; everything else on it is ignored.
struct Options {
    smart_ptr<CmdLineOption> config = new CmdLineOption(L"config", false);
    smart_ptr<CmdLineOption> level = new CmdLineOption(L"level", false);
    smart_ptr<CmdLineOption> find = new CmdLineOption(L"find", false);
    smart_ptr<CmdLineOption> quiet = new CmdLineOption(L"quiet", false);

    Options(int argc, char** argv)
    {
        CmdLineParser parser(argc, argv);
        for (const auto& option : {config, level, find, quiet})
            parser.AddOption(option);
        parser.Parse();
    }
};

Text ValueOr(const smart_ptr<CmdLineOption>& option, const Text& otherwise)
{
    return option->IsDefined() ? option->GetValue() : otherwise;
}

// The screen gets UTF-8, whatever the locale.
void Print(const Text& line)
{
    std::cout << UTF8::ToUTF8(line) << '\n';
}

int Fail(const Text& message)
{
    TOOLKIT_LOG(SeverityError) << message << ILogger::c_strLogToken3;
    std::cerr << "host: " << UTF8::ToUTF8(message) << '\n';
    return EXIT_FAILURE;
}

Text DefaultSettingsPath()
{
    Text path;
    PathManager::AppendPath(path, PathManager::GetInstance()->GetConfigurationPath(), L"host.ini");
    return path;
}

// A relative name in the settings means a file beside them.
Text PathBesideSettings(const Text& settingsPath, const Text& name)
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

// Installs a logger that writes to a file, and returns the path of that file. Only where something
// stands that is not ours to write to does the logger take another name beside it.
Text StartLog(LogSeverity level, const Text& name, unsigned int sizeLimitBytes)
{
    ILogger::SetLogger(new FileLogger(level, name, sizeLimitBytes));

    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    const Text& baseName = name.empty() ? paths->GetApplicationName() : name;
    Text path;
    PathManager::AppendPath(path, paths->GetTempDir(), baseName + FileLogger::c_strLogExtension);
    return path;
}

void PrintRow(Text label, const Text& value)
{
    constexpr std::size_t labelWidth = 24;

    label.resize(labelWidth, L' ');
    Print(label + value);
}

void PrintPaths()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    PrintRow(L"Application", paths->GetApplicationName());
    PrintRow(L"Unique name", paths->GetApplicationUniqueName());
    PrintRow(L"Application path", paths->GetApplicationPath());
    PrintRow(L"Configuration path", paths->GetConfigurationPath());
    PrintRow(L"Ressources path", paths->GetApplicationRessourcesPath());
    PrintRow(L"Plug-ins path", paths->GetPluginsPath());
    PrintRow(L"Data path", paths->GetApplicationDataPath());
    PrintRow(L"Documents path", paths->GetDocumentsPath());
    PrintRow(L"Temporary path", paths->GetTempDir());
}

Text DescribePlatform()
{
    const wchar_t* const families[] = {L"unknown", L"Windows", L"Mac", L"Unix"};

    const smart_ptr<SystemInfo> system = SystemInfo::GetInstance();
    return Text(families[system->GetPlatform()]) + L" " +
           StringConvert::UStringFromInt32(system->GetOSMajorVersion()) + L"." +
           StringConvert::UStringFromInt32(system->GetOSMinorVersion());
}

void PrintSystem()
{
    const bool isSecond = SingleApplicationInstance::GetInstance()->IsAlreadyRunning();
    PrintRow(L"Platform", DescribePlatform());
    PrintRow(L"Library version", Version::GetInstance()->ToString());
    PrintRow(L"Framework version", wxVERSION_STRING);
    PrintRow(L"Another instance runs", isSecond ? L"yes" : L"no");
}

// Searches on a worker thread and says what came of it.
int Search(const Text& path, const Text& wanted, bool isQuiet)
{
    TextSearch search(path, wanted);
    if (!search.Run())
        return Fail(L"No thread can be started.");
    search.Wait();
    if (!search.HasReadFile())
        return Fail(L"There is no text to search, cannot read: " + path);

    const Text summary = StringConvert::UStringFromUint32(search.GetHitCount()) + L" of " +
                         StringConvert::UStringFromUint32(search.GetLineCount()) +
                         L" lines contain \"" + wanted + L"\".";
    TOOLKIT_LOG(SeverityInfo) << summary << ILogger::c_strLogToken3;
    if (!isQuiet)
        Print(summary);
    return EXIT_SUCCESS;
}

int Run(const Options& options)
{
    const Text settingsPath = ValueOr(options.config, DefaultSettingsPath());
    const IniFile settings(settingsPath);
    if (!settings.IsLoaded())
        return Fail(L"There are no settings, cannot read: " + settingsPath);

    LogSeverity level = SeverityInfo;
    const Text levelText = ValueOr(options.level, settings.GetValue(L"Log", L"level", L"2"));
    if (!ParseLevel(levelText, level))
        return Fail(L"The log level is a number from 0 to 4, not: " + levelText);

    const Text logPath = StartLog(level, settings.GetValue(L"Log", L"name", Text::Empty()),
                                  settings.GetUint32(L"Log", L"sizeLimit", 1'000'000));
    TOOLKIT_LOG(SeverityInfo) << L"Settings read: " << settingsPath << ILogger::c_strLogToken3;
    wxLogMessage("Process %lu of the user %s", wxGetProcessId(), wxGetUserId());

    const bool isQuiet = options.quiet->IsDefined();
    if (!isQuiet) {
        PrintPaths();
        PrintSystem();
        PrintRow(L"Settings", settingsPath);
        PrintRow(L"Log", logPath);
    }
    const Text textName = settings.GetValue(L"Text", L"file", Text::Empty());
    if (textName.empty())
        return Fail(L"The settings name no text: [Text] file is missing in " + settingsPath);
    return Search(PathBesideSettings(settingsPath, textName),
                  ValueOr(options.find, settings.GetValue(L"Text", L"find", Text::Empty())),
                  isQuiet);
}

} // namespace

int main(int argc, char** argv)
{
    const Options options(argc, argv);
    HostModule hostModule;
    LibModuleManager* const modules = LibModuleManager::GetInstance();

    modules->Register(&hostModule);
    modules->Initialize(true);
    const int exitCode = Run(options);
    modules->Release(true);
    modules->Unregister(&hostModule);
    return exitCode;
}
