#include "toolkit/base/ExecutablePath.h"

#include "toolkit/base/Utf8.h"

#include <filesystem>
#include <system_error>

namespace Toolkit::Base {

std::wstring GetExecutablePath()
{
    std::error_code error;
    const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    return DecodeUtf8(path.native());
}

} // namespace Toolkit::Base
