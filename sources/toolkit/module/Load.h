#pragma once

#include "toolkit/core/Export.h"

/// Creates the library's module and the module registry, and registers the module.
///
/// Runs when the library is loaded; further calls do nothing. A program that links the library
/// statically may call it earlier, so as not to depend on the order in which objects are
/// constructed.
///
/// Throws `std::bad_alloc` when out of memory, and may then be called again. If memory runs out
/// while the library is loaded, the process ends.
extern "C" TOOLKIT_API void DllToolkitLoad();

/// Undoes DllToolkitLoad(). Runs when the library is unloaded; further calls do nothing.
extern "C" TOOLKIT_API void DllToolkitUnload();
