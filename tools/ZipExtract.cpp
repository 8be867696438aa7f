#include "ZipExtract.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include "Descriptor.h"
#include "ExtractedFile.h"
#include "Failure.h"
#include "StopSignals.h"
#include "ZipDirectory.h"

namespace Tool {
namespace {

constexpr mode_t c_permissions = 0777; // before the umask is applied

// Two slashes in a row have an empty component between them; a slash at the end adds none.
std::vector<std::string> SplitIntoComponents(const std::string& name)
{
    std::vector<std::string> components;
    for (std::size_t begin = 0; begin < name.size();) {
        const std::size_t end = std::min(name.find('/', begin), name.size());
        components.push_back(name.substr(begin, end - begin));
        begin = end + 1;
    }
    return components;
}

// Whether `name` can be appended to the target directory without leading elsewhere.
bool IsSafe(const std::string& name)
{
    const std::vector<std::string> components = SplitIntoComponents(name);
    return !components.empty() && name.find('\0') == std::string::npos &&
           std::none_of(components.begin(), components.end(), [](const std::string& component) {
               return component.empty() || component == "." || component == "..";
           });
}

bool IsFileOrDirectory(const StoredZipEntry& entry)
{
    const mode_t type = entry.mode & static_cast<mode_t>(S_IFMT);
    return type == 0 || type == S_IFREG || type == S_IFDIR;
}

bool LeadsUp(const std::string& name)
{
    const std::vector<std::string> components = SplitIntoComponents(name);
    return std::find(components.begin(), components.end(), "..") != components.end();
}

void RequireSafeEntries(const ZipArchive& archive, const std::string& path)
{
    for (const StoredZipEntry& entry : ReadZipDirectory(path)) {
        if (!entry.name.empty() && entry.name.front() == '/')
            throw Failure("archive refused: absolute entry name \"" + entry.name + "\"");
        if (LeadsUp(entry.name))
            throw Failure("archive refused: unsafe entry name \"" + entry.name + "\"");
        if (!IsFileOrDirectory(entry))
            throw Failure("archive refused: \"" + entry.name +
                          "\" is neither a file nor a directory");
    }
    for (const auto& [wideName, entry] : archive.GetEntries()) {
        const std::string name = GetEntryName(*entry);
        if (!IsSafe(name))
            throw Failure("archive refused: unsafe entry name \"" + name + "\"");
    }
}

// Opens the directory `name` in `parent`, and creates it if it is missing. Follows no links.
Descriptor EnterDirectory(const Descriptor& parent, const std::string& name)
{
    if (::mkdirat(parent.Get(), name.c_str(), c_permissions) != 0 && errno != EEXIST)
        throw MakeSystemFailure("cannot create " + name);
    Descriptor directory(
        ::openat(parent.Get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!directory.IsOpen())
        throw MakeSystemFailure("cannot enter " + name);
    return directory;
}

Descriptor OpenRoot(const std::string& directory)
{
    if (::mkdir(directory.c_str(), c_permissions) != 0 && errno != EEXIST)
        throw MakeSystemFailure("cannot create " + directory);
    Descriptor root(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!root.IsOpen())
        throw MakeSystemFailure("cannot enter " + directory);
    return root;
}

Descriptor EnterDirectories(const std::string& root, const std::vector<std::string>& names)
{
    Descriptor directory = OpenRoot(root);
    for (const std::string& name : names)
        directory = EnterDirectory(directory, name);
    return directory;
}

// Extracts a file of at most `limit` bytes; returns how many bytes may still be written.
unsigned long long ExtractFile(ZipArchive& archive, const ZipArchive::Entry& entry,
                               const std::string& root, unsigned long long limit)
{
    std::vector<std::string> components = SplitIntoComponents(GetEntryName(*entry));
    const std::string name = components.back();
    components.pop_back();
    ExtractedFile file(EnterDirectories(root, components), name);
    archive.Read(entry, [&](std::string_view bytes) {
        if (bytes.size() > limit)
            throw Failure("the entries are larger than the limit");
        if (StopSignals::IsRequested())
            throw Failure("interrupted");
        file.Write(bytes);
        limit -= bytes.size();
    });
    file.Commit();
    return limit;
}

} // namespace

void ExtractZip(ZipArchive& archive, const std::string& path, const std::string& directory,
                unsigned long long limit, Output& output)
{
    RequireSafeEntries(archive, path);
    // Also creates the directory if there is nothing to extract.
    OpenRoot(directory);
    for (const auto& [wideName, entry] : archive.GetEntries()) {
        if (entry->IsDir())
            EnterDirectories(directory, SplitIntoComponents(GetEntryName(*entry)));
        else
            limit = ExtractFile(archive, entry, directory, limit);
        output.WriteVisible(GetEntryName(*entry));
        output.Write("\n");
    }
}

} // namespace Tool
