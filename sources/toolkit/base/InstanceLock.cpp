#include "toolkit/base/InstanceLock.h"

#include "toolkit/base/ShortenName.h"
#include "toolkit/base/UserAccount.h"
#include "toolkit/base/Utf8.h"

#include <cstddef>
#include <fcntl.h>
#include <string>
#include <string_view>

namespace Toolkit::Base {
namespace {

// A file name has at most 255 bytes. MakePath() adds a dot before the name and ".lock" after it.
constexpr std::size_t c_maxNameLength =
    255 - std::string_view(".").size() - std::string_view(".lock").size();

FileDescriptor OpenLockFile(const std::wstring& name)
{
    // EncodeUtf8() also returns an empty string for a name that UTF-8 cannot encode.
    if (EncodeUtf8(name).empty())
        return {};
    const std::string path = InstanceLock::MakePath(name);
    FileDescriptor file = FileDescriptor::OpenRegular(path, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
    if (file.IsOpen())
        return file;
    // A file that cannot be written, as on a read-only file system, can still be locked.
    return FileDescriptor::OpenRegular(path, O_RDONLY | O_NOFOLLOW);
}

} // namespace

std::string InstanceLock::MakePath(const std::wstring& name)
{
    return EncodeUtf8(GetHomeDirectory()) + "/." + ShortenName(EncodeUtf8(name), c_maxNameLength) +
           ".lock";
}

InstanceLock::InstanceLock(const std::wstring& name) : m_lock(OpenLockFile(name)) {}

} // namespace Toolkit::Base
