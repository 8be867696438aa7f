// A plug-in of the example host that searches the files of a folder and, with -deep, of its
// subfolders:
//
//     find -folder <folder> -pattern <regular expression> [-files <wildcard>] [-deep]

#include <algorithm>
#include <iterator>
#include <toolkit/Toolkit.h>
#include <vector>

#include "FolderFiles.h"
#include "LineSearch.h"
#include "PlugIn.h"
#include "StartStopLog.h"

using namespace HostPlugIn;
using namespace Toolkit;

namespace {

using Text = TString<wchar_t>;

StartStopLog s_module(L"find");
const ModuleRegistration s_registration(s_module);

bool SearchLine(LineSearch& search, const Text& place, Text line, CommandRun& run)
{
    // ToUTF8() and WriteLine() would end the line at a null character.
    std::replace(line.begin(), line.end(), L'\0', L' ');
    return !search.Matches(UTF8::ToUTF8(line)) || run.WriteLine(place + L": " + line);
}

bool SearchFile(LineSearch& search, const Text& folder, const Text& name, CommandRun& run)
{
    Text path;
    PathManager::AppendPath(path, folder, name);
    TextFile file;
    if (!file.Open(path)) {
        run.Warn(L"cannot read " + path);
        return true;
    }

    // Eof() is already true on the last line, so search each line before checking Eof().
    unsigned int number = 1;
    for (Text line = file.GetFirstLine();; line = file.GetNextLine(), ++number) {
        if (!SearchLine(search, name + L":" + StringConvert::UStringFromUint32(number), line, run))
            return false;
        if (file.Eof())
            return true;
    }
}

bool Find(CommandRun& run)
{
    LineSearch search(run.GetValue(L"pattern"));
    const Text& folder = run.GetValue(L"folder");
    if (!Directory::Exist(folder))
        return run.Fail(L"cannot find the folder " + folder);

    const std::vector<Text> names =
        FindFiles(folder, run.GetValue(L"files"), run.IsDefined(L"deep"));
    unsigned int done = 0;
    for (const Text& name : names) {
        if (!SearchFile(search, folder, name, run) ||
            !run.ReportProgress(++done, names.size(), L"files"))
            return false;
    }
    return true;
}

constexpr Option c_options[] = {{L"folder", Option::Path, true},
                                {L"pattern", Option::Value, true},
                                {L"files", Option::Value, false},
                                {L"deep", Option::Flag, false}};
constexpr Command c_commands[] = {{L"find",
                                   L"lines of a folder's files that match a regular expression",
                                   c_options, std::size(c_options), RunGuarded<Find>}};

} // namespace

const PlugIn* GetHostPlugIn() noexcept
{
    static const PlugIn plugIn{c_interfaceVersion, L"find", s_registration.GetFailure(), c_commands,
                               std::size(c_commands)};
    return &plugIn;
}
