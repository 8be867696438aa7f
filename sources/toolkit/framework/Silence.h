#pragma once

#include <wx/log.h>

namespace Toolkit::Framework {

/// Keeps wxWidgets from logging on this thread while the object exists. Used around calls whose
/// failure is only a result.
///
/// On a thread that wxWidgets did not start, the first object leaks memory. Where possible, check
/// before the call instead.
using Silence = wxLogNull;

} // namespace Toolkit::Framework
