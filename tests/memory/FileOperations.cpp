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

#include <memory>
#include <string>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

const TempDir& World()
{
    static const TempDir directory;
    return directory;
}

const TString<wchar_t>& FilePath()
{
    static const TString<wchar_t> path =
        World().WriteFile(L"a file with quite a long name.ini",
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

void FileMade(Attempt& attempt)
{
    Place<FFile> file;
    attempt.Run([&] { file.Make(); });
    attempt.Always(!file->IsOpened() && file->Open(FilePath(), c_read));
}

void FileOpened(Attempt& attempt)
{
    FFile file;
    bool isOpen = false;
    attempt.Run([&] { isOpen = file.Open(FilePath(), c_read); });
    attempt.Expect(isOpen && file.IsOpened(), !isOpen && !file.IsOpened());
    attempt.Always(file.Open(FilePath(), c_read));
}

void FileWritten(Attempt& attempt)
{
    const TString<wchar_t> path = World().File(L"written");
    FFile file;
    file.Open(path, c_write);
    attempt.Run([&] { file.Write(c_line); });
    attempt.Always(file.Close());
    const std::string bytes = World().ReadFile(L"written");
    attempt.Expect(bytes.size() == c_line.size(), bytes.empty());
}

void FileUsed(Attempt& attempt)
{
    Place<FFile> file;
    file.Make().Open(FilePath(), c_read);
    char byte = 0;
    bool isRead = false;
    attempt.Run([&] {
        isRead = file->IsOpened() && file->Read(&byte, 1) && file->Seek(0, true) &&
                 file->SeekEnd(0) && file->GetLength() > 0 && file->GetOffset() > 0 &&
                 !file->IsEOF() && file->Flush() && file->Close();
        file.End();
    });
    attempt.Always(!attempt.HasFailed() && isRead);
}

void FileExists(Attempt& attempt)
{
    bool exists = false;
    attempt.Run([&] { exists = FFile::Exists(FilePath()); });
    attempt.Expect(exists, !exists);
}

void TextFileMade(Attempt& attempt)
{
    Place<TextFile> file;
    attempt.Run([&] { file.Make(); });
    attempt.Always(file->Eof() && file->Open(FilePath()) && !file->GetFirstLine().empty());
}

void TextFileOpened(Attempt& attempt)
{
    TextFile file;
    bool isOpen = false;
    attempt.Run([&] { isOpen = file.Open(FilePath()); });
    attempt.Expect(isOpen && !file.GetFirstLine().empty(), !isOpen && file.Eof());
    attempt.Always(file.Open(FilePath()));
}

void TextFileRead(Attempt& attempt)
{
    TextFile file;
    file.Open(FilePath());
    TString<wchar_t> first;
    TString<wchar_t> second;
    const bool isRead = attempt.Run(Rule::BadAlloc, [&] {
        first = file.GetFirstLine();
        second = file.GetNextLine();
    });
    if (isRead)
        attempt.Expect(first.size() == 27 && !second.empty() && file.Eof());
    else
        attempt.Always(!file.Eof());
    attempt.Always(file.GetFirstLine().size() == 27);
}

void TextFileAddedTo(Attempt& attempt)
{
    const TString<wchar_t> path = World().WriteFile(L"lines", "first\n");
    TextFile file;
    file.Open(path);
    attempt.Run([&] { file.AddLine(c_line); });
    const bool isWritten = file.Write();
    const std::string bytes = World().ReadFile(L"lines");
    attempt.Expect(isWritten && bytes.size() == 6 + c_line.size() + 1,
                   !isWritten && bytes == "first\n");
    attempt.Always(file.Open(path) && file.Write());
}

void TextFileWritten(Attempt& attempt)
{
    const TString<wchar_t> path = World().WriteFile(L"lines", "first\n");
    TextFile file;
    file.Open(path);
    file.AddLine(c_line);
    bool isWritten = false;
    attempt.Run([&] { isWritten = file.Write(); });
    const std::string bytes = World().ReadFile(L"lines");
    attempt.Expect(isWritten && bytes.size() > 6, !isWritten && bytes == "first\n");
    attempt.Always(file.Write() && World().ReadFile(L"lines").size() > 6);
}

void TextFileLetGo(Attempt& attempt)
{
    Place<TextFile> file;
    file.Make().Open(FilePath());
    Place<TextFile> other;
    other.Make().Open(FilePath());
    attempt.Run([&] {
        file->Clear();
        file->Close();
        file.End();
        other.End();
    });
    attempt.Always(!attempt.HasFailed());
}

void WordRead(Attempt& attempt)
{
    const std::string bytes = "aWordThatIsMuchLongerThanAString next";
    wxMemoryInputStream memory(bytes.data(), bytes.size());
    TextInputStream stream(new wxTextInputStream(memory));
    TString<wchar_t> word = L"old";
    attempt.Run([&] { stream >> word; });
    attempt.Expect(word.size() == 32, word.empty());
}

void WordStreamEnded(Attempt& attempt)
{
    const std::string bytes = "word";
    wxMemoryInputStream memory(bytes.data(), bytes.size());
    auto* const text = new wxTextInputStream(memory);
    attempt.Run([&] { const TextInputStream stream(text); });
    attempt.Always(!attempt.HasFailed());
}

// Directories.

void DirectoryMade(Attempt& attempt)
{
    const TString<wchar_t> path = World().File(L"");
    FilePath();
    Place<Directory> directory;
    attempt.Run([&] { directory.Make(path); });
    std::vector<TString<wchar_t>> names;
    const unsigned int count = directory->GetFiles(c_everything, names);
    attempt.Expect(count > 0, count == 0);
}

template <typename List>
void Lists(Attempt& attempt, List list)
{
    Directory::Create(World().File(L"a subdirectory with quite a long name"));
    FilePath();
    const Directory directory(World().File(L""));
    std::vector<TString<wchar_t>> names{L"old"};
    unsigned int count = 0;
    attempt.Run([&] { count = list(directory, names); });
    attempt.Expect(count > 0 && names.size() == count, count == 0 && names.empty());
    attempt.Always(list(directory, names) > 0);
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

void ListsBoth(Attempt& attempt)
{
    static const TString<wchar_t> path = World().File(L"");
    Lists(attempt, [](const Directory&, std::vector<TString<wchar_t>>& names) {
        return Directory::EnumFilePaths(names, path, c_everything);
    });
}

void DirectoryCreated(Attempt& attempt)
{
    const TString<wchar_t> path = World().File(L"parent/a new directory with a name");
    std::filesystem::remove_all(World().Path() / "parent");
    bool isCreated = false;
    attempt.Run([&] { isCreated = Directory::Create(path); });
    attempt.Expect(isCreated, !isCreated);
    attempt.Always(Directory::Create(path));
}

void DirectoryExists(Attempt& attempt)
{
    const TString<wchar_t> path = World().File(L"");
    bool exists = false;
    attempt.Run([&] { exists = Directory::Exist(path); });
    attempt.Expect(exists, !exists);
}

void FileRemoved(Attempt& attempt)
{
    const TString<wchar_t> path = World().WriteFile(L"a file that is to be removed", "x");
    bool isRemoved = false;
    attempt.Run([&] { isRemoved = Directory::RemoveFile(path); });
    attempt.Expect(isRemoved, !isRemoved && FFile::Exists(path));
}

// Libraries.

void LibraryMade(Attempt& attempt)
{
    Place<DynamicLibrary> library;
    attempt.Run([&] { library.Make(); });
    attempt.Always(library->Detach() == nullptr);
}

void LibraryLoaded(Attempt& attempt)
{
    static const TString<wchar_t> name = L"libstdc++.so.6";
    static const TString<wchar_t> symbol = L"__cxa_allocate_exception";
    Place<DynamicLibrary> library;
    attempt.Run([&] { library.Make(name); });
    const bool isFound = library->GetSymbol(symbol) != nullptr;
    void* const handle = library->Detach();
    attempt.Expect(isFound && handle, !isFound && !handle);
    DynamicLibrary::Unload(handle);
}

void SymbolFound(Attempt& attempt)
{
    static const TString<wchar_t> name = L"libstdc++.so.6";
    static const TString<wchar_t> symbol = L"__cxa_allocate_exception";
    const DynamicLibrary library(name);
    void* address = nullptr;
    attempt.Run([&] { address = library.GetSymbol(symbol); });
    attempt.Expect(address != nullptr, address == nullptr);
    attempt.Always(library.GetSymbol(symbol) != nullptr);
}

void LibraryLetGo(Attempt& attempt)
{
    static const TString<wchar_t> name = L"libstdc++.so.6";
    Place<DynamicLibrary> library;
    library.Make(name);
    Place<DynamicLibrary> other;
    other.Make(name);
    attempt.Run([&] {
        DynamicLibrary::Unload(library->Detach());
        library.End();
        other.End();
    });
    attempt.Always(!attempt.HasFailed());
}

// Settings.

void SettingsRead(Attempt& attempt)
{
    FilePath();
    Place<IniFile> file;
    attempt.Run([&] { file.Make(FilePath()); });
    attempt.Expect(file->IsLoaded() && file->HasValue(c_section, c_key),
                   !file->IsLoaded() && !file->HasSection(c_section));
    attempt.Always(file->Parse(FilePath()) && file->HasSection(c_section));
}

void SettingsParsed(Attempt& attempt)
{
    IniFile file(FilePath());
    bool isParsed = false;
    attempt.Run([&] { isParsed = file.Parse(FilePath()); });
    attempt.Expect(isParsed && file.HasValue(c_section, c_key),
                   !isParsed && !file.HasSection(c_section));
    attempt.Always(file.Parse(FilePath()));
}

void SettingsAsked(Attempt& attempt)
{
    const IniFile file(FilePath());
    bool isRight = false;
    attempt.Run([&] { isRight = file.HasSection(c_section) && file.HasValue(c_section, c_key); });
    attempt.Always(!attempt.HasFailed() && isRight);
}

// When out of memory, IniFile never returns the default instead of the value.
void SettingsGotten(Attempt& attempt)
{
    const IniFile file(FilePath());
    const auto isRight = [&file] {
        return file.GetValue(c_section, c_key, c_key) == c_value &&
               file.GetUint32(c_section, c_key, 1) == 0 &&
               file.GetInt32(c_section, c_key, 1) == 0 && !file.GetBool(c_section, c_key, true);
    };
    bool wasRight = false;
    const bool hasReturned = attempt.Run(Rule::BadAlloc, [&] { wasRight = isRight(); });
    attempt.Always(hasReturned == wasRight && isRight());
}

void KeysListed(Attempt& attempt)
{
    const IniFile file(FilePath());
    std::vector<TString<wchar_t>> keys{L"old"};
    attempt.Run([&] { file.GetKeyList(c_section, keys); });
    attempt.Expect(keys.size() == 1 && keys[0] == c_key, keys.empty());
}

// Paths.

void PathsMade(Attempt& attempt)
{
    auto paths = std::unique_ptr<PathManager>();
    if (attempt.Run(Rule::BadAlloc, [&] { paths = std::make_unique<PathManager>(); }))
        attempt.Expect(!paths->GetApplicationName().empty());
    attempt.Run([&] { paths.reset(); });
}

void PathsOfAnotherMade(Attempt& attempt)
{
    static const TString<wchar_t> program = L"/opt/a rather long name of a folder/bin/program";
    auto paths = std::unique_ptr<PathManager>();
    if (attempt.Run(Rule::BadAlloc, [&] { paths = std::make_unique<PathManager>(program); }))
        attempt.Expect(paths->GetApplicationName() == L"program");
}

void PathsCreated(Attempt& attempt)
{
    PathManager::ReleaseInstance();
    attempt.Run([] { PathManager::CreateInstance(); });
    attempt.Expect(PathManager::GetInstance().IsValid(), !PathManager::GetInstance().IsValid());
    PathManager::CreateInstance();
    attempt.Always(PathManager::GetInstance().IsValid());
}

void PathsReleased(Attempt& attempt)
{
    PathManager::CreateInstance();
    attempt.Run([] {
        static_cast<void>(PathManager::GetInstance());
        PathManager::ReleaseInstance();
        static_cast<void>(PathManager::GetInstance());
    });
    attempt.Always(!attempt.HasFailed() && !PathManager::GetInstance().IsValid());
    PathManager::CreateInstance();
}

template <typename Get>
void PathGotten(Attempt& attempt, Get get)
{
    PathManager::CreateInstance();
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    TString<wchar_t> path = L"old";
    attempt.Run([&] { path = get(*paths); });
    attempt.Expect(path.size() > 3, path.empty());
}

template <typename Set>
void PathSet(Attempt& attempt, Set set, const TString<wchar_t>& (PathManager::*get)() const)
{
    PathManager paths;
    const TString<wchar_t> before = (paths.*get)();
    const TString<wchar_t> plugins = paths.GetPluginsPath();
    const TString<wchar_t> path = World().File(L"a directory that is set as a path");
    const bool isSet = attempt.Run(Rule::BadAlloc, [&] { set(paths, path); });
    if (isSet)
        attempt.Expect((paths.*get)() == path, true);
    else
        attempt.Always((paths.*get)() == before && paths.GetPluginsPath() == plugins);
}

void PathAppended(Attempt& attempt)
{
    static const TString<wchar_t> part = L"a file with quite a long name";
    TString<wchar_t> path = L"/a directory with a long name";
    attempt.Run([&] { PathManager::AppendPath(path, part); });
    attempt.Expect(path == L"/a directory with a long name/a file with quite a long name",
                   path.empty());
}

void PathJoined(Attempt& attempt)
{
    static const TString<wchar_t> base = L"/a directory with a long name";
    static const TString<wchar_t> part = L"a file with quite a long name";
    TString<wchar_t> path = L"old";
    attempt.Run([&] { PathManager::AppendPath(path, base, part); });
    attempt.Expect(path == L"/a directory with a long name/a file with quite a long name",
                   path.empty());
}

void PathSplit(Attempt& attempt)
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

void PathTested(Attempt& attempt)
{
    bool exists = false;
    attempt.Run([&] {
        exists = PathManager::Exists(FilePath()) && PathManager::FileExists(FilePath()) &&
                 !PathManager::DirExists(FilePath());
    });
    attempt.Expect(exists, !exists);
}

} // namespace

std::vector<Operation> FileOperations()
{
    return {
        {"Toolkit::FFile::FFile", FileMade},
        {"Toolkit::FFile::~FFile", FileUsed},
        {"Toolkit::FFile::Open", FileOpened},
        {"Toolkit::FFile::Write", FileWritten},
        {"Toolkit::FFile::Exists", FileExists},
        {"Toolkit::FFile::Close", FileUsed},
        {"Toolkit::FFile::Flush", FileUsed},
        {"Toolkit::FFile::GetLength", FileUsed},
        {"Toolkit::FFile::GetOffset", FileUsed},
        {"Toolkit::FFile::IsEOF", FileUsed},
        {"Toolkit::FFile::IsOpened", FileUsed},
        {"Toolkit::FFile::Read", FileUsed},
        {"Toolkit::FFile::Seek", FileUsed},
        {"Toolkit::FFile::SeekEnd", FileUsed},
        {"Toolkit::TextFile::TextFile", TextFileMade},
        {"Toolkit::TextFile::~TextFile", TextFileLetGo},
        {"Toolkit::TextFile::Open", TextFileOpened},
        {"Toolkit::TextFile::Close", TextFileLetGo},
        {"Toolkit::TextFile::Clear", TextFileLetGo},
        {"Toolkit::TextFile::Eof", TextFileRead},
        {"Toolkit::TextFile::GetFirstLine", TextFileRead},
        {"Toolkit::TextFile::GetNextLine", TextFileRead},
        {"Toolkit::TextFile::AddLine", TextFileAddedTo},
        {"Toolkit::TextFile::Write", TextFileWritten},
        {"Toolkit::TextInputStream::operator>>", WordRead},
        {"Toolkit::TextInputStream::~TextInputStream", WordStreamEnded},
        {"Toolkit::InputStream::InputStream", WordStreamEnded},
        {"Toolkit::InputStream::~InputStream", WordStreamEnded},
        {"Toolkit::Directory::Directory", DirectoryMade},
        {"Toolkit::Directory::GetDirectories", ListsDirectories},
        {"Toolkit::Directory::GetFiles", ListsFiles},
        {"Toolkit::Directory::EnumFilePaths", ListsBoth},
        {"Toolkit::Directory::Create", DirectoryCreated},
        {"Toolkit::Directory::Exist", DirectoryExists},
        {"Toolkit::Directory::RemoveFile", FileRemoved},
        {"Toolkit::DynamicLibrary::DynamicLibrary", LibraryMade},
        {"Toolkit::DynamicLibrary::DynamicLibrary", LibraryLoaded},
        {"Toolkit::DynamicLibrary::GetSymbol", SymbolFound},
        {"Toolkit::DynamicLibrary::Detach", LibraryLetGo},
        {"Toolkit::DynamicLibrary::Unload", LibraryLetGo},
        {"Toolkit::DynamicLibrary::~DynamicLibrary", LibraryLetGo},
        {"Toolkit::IniFile::IniFile", SettingsRead},
        {"Toolkit::IniFile::Parse", SettingsParsed},
        {"Toolkit::IniFile::GetKeyList", KeysListed},
        {"Toolkit::IniFile::GetBool", SettingsGotten},
        {"Toolkit::IniFile::GetInt32", SettingsGotten},
        {"Toolkit::IniFile::GetUint32", SettingsGotten},
        {"Toolkit::IniFile::GetValue", SettingsGotten},
        {"Toolkit::IniFile::HasSection", SettingsAsked},
        {"Toolkit::IniFile::HasValue", SettingsAsked},
        {"Toolkit::PathManager::PathManager", PathsMade},
        {"Toolkit::PathManager::PathManager", PathsOfAnotherMade},
        {"Toolkit::PathManager::~PathManager", PathsMade},
        {"Toolkit::PathManager::CreateInstance", PathsCreated},
        {"Toolkit::PathManager::GetInstance", PathsReleased},
        {"Toolkit::PathManager::ReleaseInstance", PathsReleased},
        {"Toolkit::PathManager::GetDataDir",
         [](Attempt& attempt) {
             PathGotten(attempt, [](const PathManager& paths) { return paths.GetDataDir(); });
         }},
        {"Toolkit::PathManager::GetUserLocalDataDir",
         [](Attempt& attempt) {
             PathGotten(attempt,
                        [](const PathManager& paths) { return paths.GetUserLocalDataDir(); });
         }},
        {"Toolkit::PathManager::GetTempDir",
         [](Attempt& attempt) {
             PathGotten(attempt, [](const PathManager& paths) { return paths.GetTempDir(); });
         }},
        {"Toolkit::PathManager::SetApplicationRessourcesPath",
         [](Attempt& attempt) {
             PathSet(
                 attempt,
                 [](PathManager& paths, const TString<wchar_t>& path) {
                     paths.SetApplicationRessourcesPath(path);
                 },
                 &PathManager::GetApplicationRessourcesPath);
         }},
        {"Toolkit::PathManager::SetApplicationDataPath",
         [](Attempt& attempt) {
             PathSet(
                 attempt,
                 [](PathManager& paths, const TString<wchar_t>& path) {
                     paths.SetApplicationDataPath(path);
                 },
                 &PathManager::GetApplicationDataPath);
         }},
        {"Toolkit::PathManager::SetMassStorageDataPath",
         [](Attempt& attempt) {
             PathSet(
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
             attempt.Always(paths.GetPluginsPath() == before);
         }},
        {"Toolkit::PathManager::AppendPath", PathAppended},
        {"Toolkit::PathManager::AppendPath", PathJoined},
        {"Toolkit::PathManager::SplitPath", PathSplit},
        {"Toolkit::PathManager::Exists", PathTested},
        {"Toolkit::PathManager::FileExists", PathTested},
        {"Toolkit::PathManager::DirExists", PathTested},
    };
}

} // namespace Toolkit::TestSupport
