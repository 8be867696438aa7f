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
    /// Nothing is loaded.
    DynamicLibrary();

    /// Loads the library `name` at once, resolves all its symbols and makes them available to the
    /// libraries that are loaded later. A name without an extension gets that of a loadable module.
    /// A name without a directory is searched for by the system. After a failure no symbol is found
    /// and GetError() says why.
    DynamicLibrary(const TString<wchar_t>& name);
    ~DynamicLibrary();

    /// Why the library was not loaded, in the words of the system's loader: "/a/b.so: undefined
    /// symbol: Draw". Empty when it was, when the name is empty, and when out of memory.
    const TString<wchar_t>& GetError() const { return m_error; }

    /// The address of a symbol; null when there is none.
    void* GetSymbol(const TString<wchar_t>& name) const;

    /// Gives up ownership: the library stays loaded until Unload() gets the returned handle. Null
    /// when none is loaded.
    void* Detach();

    /// Unloads the library of a handle that Detach() returned. Ignores null.
    static void Unload(void* handle);

private:
    void Load(const TString<wchar_t>& name);

    TString<wchar_t> m_name;
    std::unique_ptr<wxDynamicLibrary> m_library;
    TString<wchar_t> m_error;
};

} // namespace Toolkit
