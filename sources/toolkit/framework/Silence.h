#pragma once

#include <wx/log.h>

namespace Toolkit::Framework {

/// Keeps wxWidgets from logging on this thread until the object is destroyed. For calls whose
/// failure only their result should report.
///
/// On a thread that is not the main one and that wxWidgets did not start, the first object leaks
/// memory. Where possible, avoid the failing call instead.
using Silence = wxLogNull;

} // namespace Toolkit::Framework
