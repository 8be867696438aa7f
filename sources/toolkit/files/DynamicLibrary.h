#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

#include <memory>

class wxDynamicLibrary;

namespace Toolkit {

/// A shared library that is loaded at run time and unloaded with the object.
///
/// Only the results report failures: nothing is thrown or logged. One object is used by one thread
/// at a time.
class TOOLKIT_API DynamicLibrary {
public:
    /// Loads nothing.
    DynamicLibrary();

    /// Loads the library `name`, resolves all symbols that it uses, and makes its own available to
    /// libraries that are loaded later. A name without an extension gets that of a loadable module:
    /// ".so" on Linux. If the name has no directory, the system searches for it: see dlopen(3). If
    /// loading fails, GetSymbol() returns null and GetError() returns the reason.
    DynamicLibrary(const TString<wchar_t>& name);
    ~DynamicLibrary();

    /// Returns the system loader's message if the library was not loaded, such as "/a/b.so:
    /// undefined symbol: Draw", or "invalid name" if the name cannot be encoded in UTF-8. Empty if
    /// the library was loaded, if the name is empty, and when out of memory.
    const TString<wchar_t>& GetError() const { return m_error; }

    /// Returns the address of a symbol; null if the library has no such symbol, if this object
    /// holds no library, as after Detach(), and when out of memory.
    void* GetSymbol(const TString<wchar_t>& name) const;

    /// Gives up ownership and returns the library's handle: the library stays loaded until Unload()
    /// is called with the handle. Null if this object holds no library.
    void* Detach();

    /// Unloads the library whose `handle` Detach() returned. Ignores null.
    static void Unload(void* handle);

private:
    void Load(const TString<wchar_t>& name);

    TString<wchar_t> m_name;
    std::unique_ptr<wxDynamicLibrary> m_library;
    TString<wchar_t> m_error;
};

} // namespace Toolkit
