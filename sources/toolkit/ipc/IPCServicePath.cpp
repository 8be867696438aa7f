#include "toolkit/base/ShortenName.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/ipc/IPCServicePath.Private.h"

#include <algorithm>
#include <sys/un.h>

namespace Toolkit {
namespace {

// The path in an address ends with a null byte.
constexpr std::size_t c_longestPath = sizeof(sockaddr_un::sun_path) - 1;

bool IsNumber(const std::wstring& text)
{
    return std::all_of(text.begin(), text.end(),
                       [](wchar_t character) { return character >= L'0' && character <= L'9'; });
}

} // namespace

std::string IPCServicePath(const std::wstring& service)
{
    // The framework takes a number for a port, which would be open to the network. Nor may a null
    // character cut the path short: at its front it would even make an address without permissions.
    std::string path;
    if (service.empty() || IsNumber(service) || service.find(L'\0') != std::wstring::npos ||
        !Base::AppendEncodedUtf8(path, service.data(), service.size()))
        return {};
    // A name without a separator would be a port's to the framework.
    if (path.find('/') == std::string::npos)
        path.insert(0, "./");
    return Base::ShortenName(path, c_longestPath);
}

} // namespace Toolkit
