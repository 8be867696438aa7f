#pragma once

#include <wx/log.h>

namespace Toolkit {

/// Keeps the framework from logging on this thread while the object lives, for calls whose failure
/// is a result here.
///
/// On a thread that the framework did not start, the first one costs memory that is never freed:
/// where a check before the call can do it, that is the better way.
using FrameworkSilence = wxLogNull;

} // namespace Toolkit
