#include "toolkit/files/Directory.h"
#include "toolkit/files/FFile.h"
#include "toolkit/files/TextFile.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "scale/Operations.h"

namespace Scale {
namespace {

using namespace Toolkit;
using Text = TString<wchar_t>;

Run PrepareTextFile(int lines)
{
    const std::filesystem::path path = GetDirectory() / "lines";
    std::ofstream file(path);
    for (int line = 0; line < lines; ++line)
        file << "line " << line << '\n';
    return [lines, path] {
        TextFile text;
        Require(text.Open(ToWide(path)));
        int count = text.GetFirstLine().empty() ? 0 : 1;
        while (!text.Eof())
            count += text.GetNextLine().empty() ? 0 : 1;
        Require(count == lines);
    };
}

Run PrepareFile(int length)
{
    const auto text = std::make_shared<Text>(MakeWords<wchar_t>(length));
    return [text] {
        FFile file;
        Require(file.Open(ToWide(GetDirectory() / "text"), L"w"));
        file.Write(*text);
        Require(file.Close());
    };
}

// The directory still contains the files of the previous, smaller size. Adds the missing ones.
Run PrepareDirectory(int files)
{
    const std::filesystem::path path = GetDirectory() / "files";
    std::filesystem::create_directory(path);
    for (int i = 0; i < files; ++i)
        std::ofstream(path / ("file" + std::to_string(i) + ".txt"));
    return [files, path] {
        std::vector<Text> names;
        Require(Toolkit::Directory(ToWide(path)).GetFiles(L"*.txt", names) ==
                static_cast<unsigned int>(files));
    };
}

} // namespace

void AddFileOperations(Operations& operations)
{
    operations.push_back({"TextFile Open and GetNextLine", c_sizes, PrepareTextFile});
    operations.push_back({"FFile Write", c_sizes, PrepareFile});
    operations.push_back({"Directory GetFiles", c_fileCounts, PrepareDirectory});
}

} // namespace Scale
