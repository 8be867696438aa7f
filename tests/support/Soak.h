#pragma once

#include <string>

namespace Toolkit::TestSupport {

/// How often a sweep repeats: `sample` times in the normal test run, `full` times under
/// script/soak, which sets TOOLKIT_SOAK.
int SoakRounds(int sample, int full);

/// Reports what a sweep covered, such as "50 pairs, 30 times each". script/soak prints it.
void Covered(const std::string& what);

} // namespace Toolkit::TestSupport
