#pragma once

namespace Toolkit {

/// Has every descriptor but standard input, output and error closed when the process executes
/// another program. Safe between fork(2) and execv(3).
void CloseInheritedDescriptorsOnExec();

} // namespace Toolkit
