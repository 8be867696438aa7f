#pragma once

namespace Toolkit {

/// Marks every descriptor except standard input, output and error as close-on-exec. Safe between
/// fork(2) and execv(3).
void CloseInheritedDescriptorsOnExec();

} // namespace Toolkit
