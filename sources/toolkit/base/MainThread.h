#pragma once

namespace Toolkit::Base {

/// Whether the caller is the first thread of its process: the one that runs main(), or in a forked
/// child the one that called fork().
bool IsFirstThread();

} // namespace Toolkit::Base
