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

    /// Loads the library `name` at once, resolves all its symbols and makes them available to
    /// libraries that are loaded later. A name without an extension gets that of a loadable module.
    /// The system searches for a name without a directory. After a failure GetSymbol() finds
    /// nothing and GetError() says why.
    DynamicLibrary(const TString<wchar_t>& name);
    ~DynamicLibrary();

    /// Returns the system loader's message if the library was not loaded: "/a/b.so: undefined
    /// symbol: Draw". Empty if it was loaded, if the name is empty, and when out of memory.
    const TString<wchar_t>& GetError() const { return m_error; }

    /// Returns the address of a symbol; null if there is none.
    void* GetSymbol(const TString<wchar_t>& name) const;

    /// Gives up ownership and returns the handle: the library stays loaded until Unload() is called
    /// with it. Null if no library is loaded.
    void* Detach();

    /// Unloads the library of a `handle` that Detach() returned. Ignores null.
    static void Unload(void* handle);

private:
    void Load(const TString<wchar_t>& name);

    TString<wchar_t> m_name;
    std::unique_ptr<wxDynamicLibrary> m_library;
    TString<wchar_t> m_error;
};

} // namespace Toolkit
