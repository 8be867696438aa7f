#pragma once

#include "toolkit/core/Export.h"

/// Creates the library's module and the module registry, and registers the one with the other.
///
/// It runs by itself when the library is loaded; called again it does nothing. A program that links
/// the library statically may call it before everything else, to be independent of the order in
/// which its own objects are constructed.
extern "C" TOOLKIT_API void DllToolkitLoad();

/// Undoes DllToolkitLoad(). It runs by itself when the library is unloaded; called again it does
/// nothing.
extern "C" TOOLKIT_API void DllToolkitUnload();
