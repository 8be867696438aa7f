#pragma once

namespace Toolkit::Base {

/// Whether the caller is the first thread of its process, which runs main().
bool IsFirstThread();

} // namespace Toolkit::Base
