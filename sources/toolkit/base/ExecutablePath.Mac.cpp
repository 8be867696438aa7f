#include "toolkit/base/ExecutablePath.h"

#include "toolkit/base/Utf8.h"

#include <cstdint>
#include <cstdlib>
#include <mach-o/dyld.h>
#include <memory>

namespace Toolkit::Base {

std::wstring GetExecutablePath()
{
    std::uint32_t size = 0;
    // Fails, but stores the required size.
    _NSGetExecutablePath(nullptr, &size);
    std::string path(size, '\0');
    if (_NSGetExecutablePath(path.data(), &size) != 0)
        return {};
    // The reported path may contain symbolic links.
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr),
                                                               &std::free);
    return DecodeUtf8(resolved ? resolved.get() : path.c_str());
}

} // namespace Toolkit::Base
