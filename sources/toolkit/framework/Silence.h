#pragma once

#include <wx/log.h>

namespace Toolkit::Framework {

/// Keeps wxWidgets from logging on this thread while the object lives, for calls whose failure is
/// a result here.
///
/// On a thread that wxWidgets did not start, the first object costs memory that is never freed:
/// check before the call instead, where that is possible.
using Silence = wxLogNull;

} // namespace Toolkit::Framework
