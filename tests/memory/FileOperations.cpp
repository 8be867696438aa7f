#include "toolkit/config/IniFile.h"
#include "toolkit/files/Directory.h"
#include "toolkit/files/DynamicLibrary.h"
#include "toolkit/files/FFile.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/files/TextFile.h"
#include "toolkit/files/TextInputStream.h"

#include "support/TempDir.h"

#include <wx/mstream.h>
#include <wx/txtstrm.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

const TempDir& GetDirectory()
{
    static const TempDir directory;
    return directory;
}

const TString<wchar_t>& GetFilePath()
{
    static const TString<wchar_t> path = GetDirectory().WriteFile(
        L"a file with quite a long name.ini",
        "[Main section of this file]\n"
        "a key that is longer than a string = a value that is longer still\n");
    return path;
}

const TString<wchar_t> c_read = L"rb";
const TString<wchar_t> c_write = L"wb";
const TString<wchar_t> c_line = L"a line that is too long for the string itself";
const TString<wchar_t> c_everything = L"*";
const TString<wchar_t> c_section = L"Main section of this file";
const TString<wchar_t> c_key = L"a key that is longer than a string";
const TString<wchar_t> c_value = L"a value that is longer still";

void ConstructsFile(Attempt& attempt)
{
    Storage<FFile> file;
    attempt.Run([&] { file.Create(); });
    attempt.ExpectAlways(!file->IsOpened() && file->Open(GetFilePath(), c_read));
}

void OpensFile(Attempt& attempt)
{
    FFile file;
    bool isOpen = false;
    attempt.Run([&] { isOpen = file.Open(GetFilePath(), c_read); });
    attempt.Expect(isOpen && file.IsOpened(), !isOpen && !file.IsOpened());
    attempt.ExpectAlways(file.Open(GetFilePath(), c_read));
}

void WritesFile(Attempt& attempt)
{
    const TString<wchar_t> path = GetDirectory().File(L"written");
    FFile file;
    file.Open(path, c_write);
    attempt.Run([&] { file.Write(c_line); });
    attempt.ExpectAlways(file.Close());
    const std::string bytes = GetDirectory().ReadFile(L"written");
    attempt.Expect(bytes.size() == c_line.size(), bytes.empty());
}

void UsesFile(Attempt& attempt)
{
    Storage<FFile> file;
    file.Create().Open(GetFilePath(), c_read);
    char byte = 0;
    bool isRead = false;
    attempt.Run([&] {
        isRead = file->IsOpened() && file->Read(&byte, 1) && file->Seek(0, true) &&
                 file->SeekEnd(0) && file->GetLength() > 0 && file->GetOffset() > 0 &&
                 !file->IsEOF() && file->Flush() && file->Close();
        file.Destroy();
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && isRead);
}

void ChecksFileExists(Attempt& attempt)
{
    bool exists = false;
    attempt.Run([&] { exists = FFile::Exists(GetFilePath()); });
    attempt.Expect(exists, !exists);
}

void ConstructsTextFile(Attempt& attempt)
{
    Storage<TextFile> file;
    attempt.Run([&] { file.Create(); });
    attempt.ExpectAlways(file->Eof() && file->Open(GetFilePath()) && !file->GetFirstLine().empty());
}

void OpensTextFile(Attempt& attempt)
{
    TextFile file;
    bool isOpen = false;
    attempt.Run([&] { isOpen = file.Open(GetFilePath()); });
    attempt.Expect(isOpen && !file.GetFirstLine().empty(), !isOpen && file.Eof());
    attempt.ExpectAlways(file.Open(GetFilePath()));
}

void ReadsTextFile(Attempt& attempt)
{
    TextFile file;
    file.Open(GetFilePath());
    TString<wchar_t> first;
    TString<wchar_t> second;
    const bool isRead = attempt.Run(Rule::BadAlloc, [&] {
        first = file.GetFirstLine();
        second = file.GetNextLine();
    });
    if (isRead)
        attempt.Expect(first.size() == 27 && !second.empty() && file.Eof());
    else
        attempt.ExpectAlways(!file.Eof());
    attempt.ExpectAlways(file.GetFirstLine().size() == 27);
}

void AddsLine(Attempt& attempt)
{
    const TString<wchar_t> path = GetDirectory().WriteFile(L"lines", "first\n");
    TextFile file;
    file.Open(path);
    attempt.Run([&] { file.AddLine(c_line); });
    const bool isWritten = file.Write();
    const std::string bytes = GetDirectory().ReadFile(L"lines");
    attempt.Expect(isWritten && bytes.size() == 6 + c_line.size() + 1,
                   !isWritten && bytes == "first\n");
    attempt.ExpectAlways(file.Open(path) && file.Write());
}

void WritesTextFile(Attempt& attempt)
{
    const TString<wchar_t> path = GetDirectory().WriteFile(L"lines", "first\n");
    TextFile file;
    file.Open(path);
    file.AddLine(c_line);
    bool isWritten = false;
    attempt.Run([&] { isWritten = file.Write(); });
    const std::string bytes = GetDirectory().ReadFile(L"lines");
    attempt.Expect(isWritten && bytes.size() > 6, !isWritten && bytes == "first\n");
    attempt.ExpectAlways(file.Write() && GetDirectory().ReadFile(L"lines").size() > 6);
}

void ClosesTextFile(Attempt& attempt)
{
    Storage<TextFile> file;
    file.Create().Open(GetFilePath());
    Storage<TextFile> other;
    other.Create().Open(GetFilePath());
    attempt.Run([&] {
        file->Clear();
        file->Close();
        file.Destroy();
        other.Destroy();
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

void ReadsWord(Attempt& attempt)
{
    const std::string bytes = "aWordThatIsMuchLongerThanAString next";
    wxMemoryInputStream memory(bytes.data(), bytes.size());
    TextInputStream stream(new wxTextInputStream(memory));
    TString<wchar_t> word = L"old";
    attempt.Run([&] { stream >> word; });
    attempt.Expect(word.size() == 32, word.empty());
}

void DestroysWordStream(Attempt& attempt)
{
    const std::string bytes = "word";
    wxMemoryInputStream memory(bytes.data(), bytes.size());
    auto* const text = new wxTextInputStream(memory);
    attempt.Run([&] { const TextInputStream stream(text); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

// Directories.

void ConstructsDirectory(Attempt& attempt)
{
    const TString<wchar_t> path = GetDirectory().File(L"");
    GetFilePath();
    Storage<Directory> directory;
    attempt.Run([&] { directory.Create(path); });
    std::vector<TString<wchar_t>> names;
    const unsigned int count = directory->GetFiles(c_everything, names);
    attempt.Expect(count > 0, count == 0);
}

template <typename List>
void Lists(Attempt& attempt, List list)
{
    Directory::Create(GetDirectory().File(L"a subdirectory with quite a long name"));
    GetFilePath();
    const Directory directory(GetDirectory().File(L""));
    std::vector<TString<wchar_t>> names{L"old"};
    unsigned int count = 0;
    attempt.Run([&] { count = list(directory, names); });
    attempt.Expect(count > 0 && names.size() == count, count == 0 && names.empty());
    attempt.ExpectAlways(list(directory, names) > 0);
}

void ListsDirectories(Attempt& attempt)
{
    Lists(attempt, [](const Directory& directory, std::vector<TString<wchar_t>>& names) {
        return directory.GetDirectories(c_everything, names);
    });
}

void ListsFiles(Attempt& attempt)
{
    Lists(attempt, [](const Directory& directory, std::vector<TString<wchar_t>>& names) {
        return directory.GetFiles(c_everything, names);
    });
}

void EnumeratesFilePaths(Attempt& attempt)
{
    static const TString<wchar_t> path = GetDirectory().File(L"");
    Lists(attempt, [](const Directory&, std::vector<TString<wchar_t>>& names) {
        return Directory::EnumFilePaths(names, path, c_everything);
    });
}

void CreatesDirectory(Attempt& attempt)
{
    const TString<wchar_t> path = GetDirectory().File(L"parent/a new directory with a name");
    std::filesystem::remove_all(GetDirectory().Path() / "parent");
    bool isCreated = false;
    attempt.Run([&] { isCreated = Directory::Create(path); });
    attempt.Expect(isCreated, !isCreated);
    attempt.ExpectAlways(Directory::Create(path));
}

void ChecksDirectoryExists(Attempt& attempt)
{
    const TString<wchar_t> path = GetDirectory().File(L"");
    bool exists = false;
    attempt.Run([&] { exists = Directory::Exist(path); });
    attempt.Expect(exists, !exists);
}

void RemovesFile(Attempt& attempt)
{
    const TString<wchar_t> path = GetDirectory().WriteFile(L"a file that is to be removed", "x");
    bool isRemoved = false;
    attempt.Run([&] { isRemoved = Directory::RemoveFile(path); });
    attempt.Expect(isRemoved, !isRemoved && FFile::Exists(path));
}

// Libraries.

void ConstructsLibrary(Attempt& attempt)
{
    Storage<DynamicLibrary> library;
    attempt.Run([&] { library.Create(); });
    attempt.ExpectAlways(library->Detach() == nullptr);
}

void LoadsLibrary(Attempt& attempt)
{
    static const TString<wchar_t> name = L"libstdc++.so.6";
    static const TString<wchar_t> symbol = L"__cxa_allocate_exception";
    Storage<DynamicLibrary> library;
    attempt.Run([&] { library.Create(name); });
    const bool isFound = library->GetSymbol(symbol) != nullptr;
    void* const handle = library->Detach();
    attempt.Expect(isFound && handle, !isFound && !handle);
    DynamicLibrary::Unload(handle);
}

void FindsSymbol(Attempt& attempt)
{
    static const TString<wchar_t> name = L"libstdc++.so.6";
    static const TString<wchar_t> symbol = L"__cxa_allocate_exception";
    const DynamicLibrary library(name);
    void* address = nullptr;
    attempt.Run([&] { address = library.GetSymbol(symbol); });
    attempt.Expect(address != nullptr, address == nullptr);
    attempt.ExpectAlways(library.GetSymbol(symbol) != nullptr);
}

void UnloadsLibrary(Attempt& attempt)
{
    static const TString<wchar_t> name = L"libstdc++.so.6";
    Storage<DynamicLibrary> library;
    library.Create(name);
    Storage<DynamicLibrary> other;
    other.Create(name);
    attempt.Run([&] {
        DynamicLibrary::Unload(library->Detach());
        library.Destroy();
        other.Destroy();
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

// Settings.

void ConstructsSettings(Attempt& attempt)
{
    GetFilePath();
    Storage<IniFile> file;
    attempt.Run([&] { file.Create(GetFilePath()); });
    attempt.Expect(file->IsLoaded() && file->HasValue(c_section, c_key),
                   !file->IsLoaded() && !file->HasSection(c_section));
    attempt.ExpectAlways(file->Parse(GetFilePath()) && file->HasSection(c_section));
}

void ParsesSettings(Attempt& attempt)
{
    IniFile file(GetFilePath());
    bool isParsed = false;
    attempt.Run([&] { isParsed = file.Parse(GetFilePath()); });
    attempt.Expect(isParsed && file.HasValue(c_section, c_key),
                   !isParsed && !file.HasSection(c_section));
    attempt.ExpectAlways(file.Parse(GetFilePath()));
}

void FindsSettings(Attempt& attempt)
{
    const IniFile file(GetFilePath());
    bool isRight = false;
    attempt.Run([&] { isRight = file.HasSection(c_section) && file.HasValue(c_section, c_key); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && isRight);
}

// When out of memory, IniFile never returns the default instead of the value.
void GetsSettings(Attempt& attempt)
{
    const IniFile file(GetFilePath());
    const auto isRight = [&file] {
        return file.GetValue(c_section, c_key, c_key) == c_value &&
               file.GetUint32(c_section, c_key, 1) == 0 &&
               file.GetInt32(c_section, c_key, 1) == 0 && !file.GetBool(c_section, c_key, true);
    };
    bool wasRight = false;
    const bool hasReturned = attempt.Run(Rule::BadAlloc, [&] { wasRight = isRight(); });
    attempt.ExpectAlways(hasReturned == wasRight && isRight());
}

void ListsKeys(Attempt& attempt)
{
    const IniFile file(GetFilePath());
    std::vector<TString<wchar_t>> keys{L"old"};
    attempt.Run([&] { file.GetKeyList(c_section, keys); });
    attempt.Expect(keys.size() == 1 && keys[0] == c_key, keys.empty());
}

// Paths.

void ConstructsPaths(Attempt& attempt)
{
    auto paths = std::unique_ptr<PathManager>();
    if (attempt.Run(Rule::BadAlloc, [&] { paths = std::make_unique<PathManager>(); }))
        attempt.Expect(!paths->GetApplicationName().empty());
    attempt.Run([&] { paths.reset(); });
}

void ConstructsPathsOfAnotherProgram(Attempt& attempt)
{
    static const TString<wchar_t> program = L"/opt/a rather long name of a folder/bin/program";
    auto paths = std::unique_ptr<PathManager>();
    if (attempt.Run(Rule::BadAlloc, [&] { paths = std::make_unique<PathManager>(program); }))
        attempt.Expect(paths->GetApplicationName() == L"program");
}

void CreatesPathsInstance(Attempt& attempt)
{
    PathManager::ReleaseInstance();
    attempt.Run([] { PathManager::CreateInstance(); });
    attempt.Expect(PathManager::GetInstance().IsValid(), !PathManager::GetInstance().IsValid());
    PathManager::CreateInstance();
    attempt.ExpectAlways(PathManager::GetInstance().IsValid());
}

void ReleasesPathsInstance(Attempt& attempt)
{
    PathManager::CreateInstance();
    attempt.Run([] {
        static_cast<void>(PathManager::GetInstance());
        PathManager::ReleaseInstance();
        static_cast<void>(PathManager::GetInstance());
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && !PathManager::GetInstance().IsValid());
    PathManager::CreateInstance();
}

template <typename Get>
void GetsPath(Attempt& attempt, Get get)
{
    PathManager::CreateInstance();
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    TString<wchar_t> path = L"old";
    attempt.Run([&] { path = get(*paths); });
    attempt.Expect(path.size() > 3, path.empty());
}

template <typename Set>
void SetsPath(Attempt& attempt, Set set, const TString<wchar_t>& (PathManager::*get)() const)
{
    PathManager paths;
    const TString<wchar_t> before = (paths.*get)();
    const TString<wchar_t> plugins = paths.GetPluginsPath();
    const TString<wchar_t> path = GetDirectory().File(L"a directory that is set as a path");
    const bool isSet = attempt.Run(Rule::BadAlloc, [&] { set(paths, path); });
    if (isSet)
        attempt.Expect((paths.*get)() == path, true);
    else
        attempt.ExpectAlways((paths.*get)() == before && paths.GetPluginsPath() == plugins);
}

void AppendsPath(Attempt& attempt)
{
    static const TString<wchar_t> part = L"a file with quite a long name";
    TString<wchar_t> path = L"/a directory with a long name";
    attempt.Run([&] { PathManager::AppendPath(path, part); });
    attempt.Expect(path == L"/a directory with a long name/a file with quite a long name",
                   path.empty());
}

void JoinsPaths(Attempt& attempt)
{
    static const TString<wchar_t> base = L"/a directory with a long name";
    static const TString<wchar_t> part = L"a file with quite a long name";
    TString<wchar_t> path = L"old";
    attempt.Run([&] { PathManager::AppendPath(path, base, part); });
    attempt.Expect(path == L"/a directory with a long name/a file with quite a long name",
                   path.empty());
}

void SplitsPath(Attempt& attempt)
{
    static const TString<wchar_t> full = L"/a directory with a name/a file with a name.extension";
    TString<wchar_t> volume;
    TString<wchar_t> path;
    TString<wchar_t> name;
    TString<wchar_t> extension;
    attempt.Run([&] { PathManager::SplitPath(full, volume, path, name, extension); });
    attempt.Expect(path == L"/a directory with a name" && name == L"a file with a name" &&
                       extension == L"extension",
                   path.empty() && name.empty() && extension.empty());
}

void ChecksPathExists(Attempt& attempt)
{
    bool exists = false;
    attempt.Run([&] {
        exists = PathManager::Exists(GetFilePath()) && PathManager::FileExists(GetFilePath()) &&
                 !PathManager::DirExists(GetFilePath());
    });
    attempt.Expect(exists, !exists);
}

} // namespace

std::vector<Operation> FileOperations()
{
    return {
        {"Toolkit::FFile::FFile", ConstructsFile},
        {"Toolkit::FFile::~FFile", UsesFile},
        {"Toolkit::FFile::Open", OpensFile},
        {"Toolkit::FFile::Write", WritesFile},
        {"Toolkit::FFile::Exists", ChecksFileExists},
        {"Toolkit::FFile::Close", UsesFile},
        {"Toolkit::FFile::Flush", UsesFile},
        {"Toolkit::FFile::GetLength", UsesFile},
        {"Toolkit::FFile::GetOffset", UsesFile},
        {"Toolkit::FFile::IsEOF", UsesFile},
        {"Toolkit::FFile::IsOpened", UsesFile},
        {"Toolkit::FFile::Read", UsesFile},
        {"Toolkit::FFile::Seek", UsesFile},
        {"Toolkit::FFile::SeekEnd", UsesFile},
        {"Toolkit::TextFile::TextFile", ConstructsTextFile},
        {"Toolkit::TextFile::~TextFile", ClosesTextFile},
        {"Toolkit::TextFile::Open", OpensTextFile},
        {"Toolkit::TextFile::Close", ClosesTextFile},
        {"Toolkit::TextFile::Clear", ClosesTextFile},
        {"Toolkit::TextFile::Eof", ReadsTextFile},
        {"Toolkit::TextFile::GetFirstLine", ReadsTextFile},
        {"Toolkit::TextFile::GetNextLine", ReadsTextFile},
        {"Toolkit::TextFile::AddLine", AddsLine},
        {"Toolkit::TextFile::Write", WritesTextFile},
        {"Toolkit::TextInputStream::operator>>", ReadsWord},
        {"Toolkit::TextInputStream::~TextInputStream", DestroysWordStream},
        {"Toolkit::InputStream::InputStream", DestroysWordStream},
        {"Toolkit::InputStream::~InputStream", DestroysWordStream},
        {"Toolkit::Directory::Directory", ConstructsDirectory},
        {"Toolkit::Directory::GetDirectories", ListsDirectories},
        {"Toolkit::Directory::GetFiles", ListsFiles},
        {"Toolkit::Directory::EnumFilePaths", EnumeratesFilePaths},
        {"Toolkit::Directory::Create", CreatesDirectory},
        {"Toolkit::Directory::Exist", ChecksDirectoryExists},
        {"Toolkit::Directory::RemoveFile", RemovesFile},
        {"Toolkit::DynamicLibrary::DynamicLibrary", ConstructsLibrary},
        {"Toolkit::DynamicLibrary::DynamicLibrary", LoadsLibrary},
        {"Toolkit::DynamicLibrary::GetSymbol", FindsSymbol},
        {"Toolkit::DynamicLibrary::Detach", UnloadsLibrary},
        {"Toolkit::DynamicLibrary::Unload", UnloadsLibrary},
        {"Toolkit::DynamicLibrary::~DynamicLibrary", UnloadsLibrary},
        {"Toolkit::IniFile::IniFile", ConstructsSettings},
        {"Toolkit::IniFile::Parse", ParsesSettings},
        {"Toolkit::IniFile::GetKeyList", ListsKeys},
        {"Toolkit::IniFile::GetBool", GetsSettings},
        {"Toolkit::IniFile::GetInt32", GetsSettings},
        {"Toolkit::IniFile::GetUint32", GetsSettings},
        {"Toolkit::IniFile::GetValue", GetsSettings},
        {"Toolkit::IniFile::HasSection", FindsSettings},
        {"Toolkit::IniFile::HasValue", FindsSettings},
        {"Toolkit::PathManager::PathManager", ConstructsPaths},
        {"Toolkit::PathManager::PathManager", ConstructsPathsOfAnotherProgram},
        {"Toolkit::PathManager::~PathManager", ConstructsPaths},
        {"Toolkit::PathManager::CreateInstance", CreatesPathsInstance},
        {"Toolkit::PathManager::GetInstance", ReleasesPathsInstance},
        {"Toolkit::PathManager::ReleaseInstance", ReleasesPathsInstance},
        {"Toolkit::PathManager::GetDataDir",
         [](Attempt& attempt) {
             GetsPath(attempt, [](const PathManager& paths) { return paths.GetDataDir(); });
         }},
        {"Toolkit::PathManager::GetUserLocalDataDir",
         [](Attempt& attempt) {
             GetsPath(attempt,
                      [](const PathManager& paths) { return paths.GetUserLocalDataDir(); });
         }},
        {"Toolkit::PathManager::GetTempDir",
         [](Attempt& attempt) {
             GetsPath(attempt, [](const PathManager& paths) { return paths.GetTempDir(); });
         }},
        {"Toolkit::PathManager::SetApplicationRessourcesPath",
         [](Attempt& attempt) {
             SetsPath(
                 attempt,
                 [](PathManager& paths, const TString<wchar_t>& path) {
                     paths.SetApplicationRessourcesPath(path);
                 },
                 &PathManager::GetApplicationRessourcesPath);
         }},
        {"Toolkit::PathManager::SetApplicationDataPath",
         [](Attempt& attempt) {
             SetsPath(
                 attempt,
                 [](PathManager& paths, const TString<wchar_t>& path) {
                     paths.SetApplicationDataPath(path);
                 },
                 &PathManager::GetApplicationDataPath);
         }},
        {"Toolkit::PathManager::SetMassStorageDataPath",
         [](Attempt& attempt) {
             SetsPath(
                 attempt,
                 [](PathManager& paths, const TString<wchar_t>& path) {
                     paths.SetMassStorageDataPath(path);
                 },
                 &PathManager::GetMassStorageDataPath);
         }},
        {"Toolkit::PathManager::RebuildDependentPathes",
         [](Attempt& attempt) {
             PathManager paths;
             const TString<wchar_t> before = paths.GetPluginsPath();
             attempt.Run(Rule::BadAlloc, [&] { paths.RebuildDependentPathes(); });
             attempt.ExpectAlways(paths.GetPluginsPath() == before);
         }},
        {"Toolkit::PathManager::AppendPath", AppendsPath},
        {"Toolkit::PathManager::AppendPath", JoinsPaths},
        {"Toolkit::PathManager::SplitPath", SplitsPath},
        {"Toolkit::PathManager::Exists", ChecksPathExists},
        {"Toolkit::PathManager::FileExists", ChecksPathExists},
        {"Toolkit::PathManager::DirExists", ChecksPathExists},
    };
}

} // namespace Toolkit::TestSupport
