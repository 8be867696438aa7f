#include "toolkit/base/InstanceLock.h"

#include "toolkit/base/ShortenName.h"
#include "toolkit/base/UserAccount.h"
#include "toolkit/base/Utf8.h"

#include <fcntl.h>
#include <string>
#include <utility>

namespace Toolkit::Base {
namespace {

// Leaves room for the prefix and the suffix: file names have at most 255 bytes.
constexpr std::size_t c_longestName = 216;

FileDescriptor OpenLockFile(const std::wstring& name)
{
    if (name.empty())
        return {};
    const std::string path = InstanceLock::MakePath(name);
    FileDescriptor file = FileDescriptor::OpenRegular(path, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
    // In a read-only directory, an existing file can still be locked.
    return file.IsOpen() ? std::move(file)
                         : FileDescriptor::OpenRegular(path, O_RDONLY | O_NOFOLLOW);
}

} // namespace

std::string InstanceLock::MakePath(const std::wstring& name)
{
    return EncodeUtf8(GetHomeDirectory()) + "/." + ShortenName(EncodeUtf8(name), c_longestName) +
           ".lock";
}

InstanceLock::InstanceLock(const std::wstring& name) : m_lock(OpenLockFile(name)) {}

} // namespace Toolkit::Base
