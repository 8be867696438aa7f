#pragma once

#include <string>

namespace Toolkit::TestSupport {

/// Returns the number of repetitions of a sweep: `sample` in the normal test run, `full` under
/// script/soak, which sets TOOLKIT_SOAK.
int SoakRounds(int sample, int full);

/// Reports what a sweep covered, such as "50 pairs, 30 times each". script/soak prints the report.
void Covered(const std::string& what);

} // namespace Toolkit::TestSupport
