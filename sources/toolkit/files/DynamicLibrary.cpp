#include "toolkit/files/DynamicLibrary.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/framework/Text.h"

#include <wx/dynlib.h>
#include <wx/filename.h>

#include <dlfcn.h>

namespace Toolkit {
namespace {

TString<wchar_t> AddExtension(const TString<wchar_t>& name)
{
    wxString extension;
    wxFileName::SplitPath(Framework::ToWxString(name), nullptr, nullptr, &extension);
    if (!extension.empty())
        return name;
    return name + Framework::ToText(wxDynamicLibrary::GetDllExt(wxDL_MODULE));
}

// Returns the message of dlerror(3). It is valid UTF-8, unless the C library has translated it for
// a locale with an 8-bit encoding. Each byte then becomes the character with its value.
TString<wchar_t> GetLoaderError()
{
    const char* const error = ::dlerror();
    const TString<char> bytes(error ? error : "unknown error");
    TString<wchar_t> text = Base::DecodeUtf8(bytes);
    if (text.empty()) {
        for (const char byte : bytes)
            text.push_back(static_cast<unsigned char>(byte));
    }
    return text;
}

} // namespace

DynamicLibrary::DynamicLibrary()
    : m_library(Base::TryOr(nullptr, [] { return std::make_unique<wxDynamicLibrary>(); }))
{
}

DynamicLibrary::DynamicLibrary(const TString<wchar_t>& name) : DynamicLibrary()
{
    if (m_library && !name.empty())
        static_cast<void>(Base::RunsWithoutThrowing([&] { Load(name); }));
}

void DynamicLibrary::Load(const TString<wchar_t>& name)
{
    m_name = name;
    const TString<char> file = Base::EncodeUtf8(AddExtension(name));
    // For an empty name, dlopen() returns the program itself.
    if (file.empty()) {
        m_error = L"invalid name";
        return;
    }
    // wxDynamicLibrary only owns the handle: its Load() prints a message for every failure, and
    // only accepts names that the encoding of the locale can represent.
    if (void* const handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_GLOBAL))
        m_library->Attach(handle);
    else
        m_error = GetLoaderError();
}

DynamicLibrary::~DynamicLibrary() = default;

void* DynamicLibrary::GetSymbol(const TString<wchar_t>& name) const
{
    if (!m_library || !m_library->IsLoaded())
        return nullptr;
    return Base::TryOr(nullptr, [&] {
        return ::dlsym(m_library->GetLibHandle(), Base::EncodeUtf8(name).c_str());
    });
}

void* DynamicLibrary::Detach()
{
    return m_library && m_library->IsLoaded() ? m_library->Detach() : nullptr;
}

void DynamicLibrary::Unload(void* handle)
{
    if (handle)
        ::dlclose(handle);
}

} // namespace Toolkit
