#include "toolkit/base/Utf8.h"
#include "toolkit/ipc/IPCConnectionEventHelper.Private.h"
#include "toolkit/ipc/IPCServer.h"

#include <algorithm>
#include <string>

namespace Toolkit {
namespace {

bool DecodeUtf8(std::wstring& text, const void* data, std::size_t size)
{
    const char* const bytes = static_cast<const char*>(data);
    const char* const end = std::find(bytes, bytes + size, '\0');
    return Base::AppendDecodedUtf8(text, bytes, static_cast<std::size_t>(end - bytes));
}

void CopyCharacters(std::wstring& text, const void* data, std::size_t size)
{
    const wchar_t* const characters = static_cast<const wchar_t*>(data);
    text.assign(characters, std::find(characters, characters + size / sizeof(wchar_t), L'\0'));
}

} // namespace

IPCConnectionEventHelper::IPCConnectionEventHelper(IPCServer& server) : m_server(server)
{
    // The library reads the socket itself: there is none that the base class could disconnect.
    SetConnected(false);
}

bool IPCConnectionEventHelper::OnExecute(const wxString&, const void* data, size_t size,
                                         wxIPCFormat format)
{
    std::wstring text;
    if (format != wxIPC_UTF8TEXT)
        CopyCharacters(text, data, size);
    else if (!DecodeUtf8(text, data, size))
        return false;
    m_server.SendExecuteEvent(text);
    return true;
}

} // namespace Toolkit
