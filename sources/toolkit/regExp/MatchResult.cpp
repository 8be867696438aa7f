#include "toolkit/regExp/MatchResult.h"

#include "toolkit/regExp/PatternEngine.Private.h"

#include <algorithm>
#include <iterator>

namespace Toolkit {

MatchResult::MatchResult()
    : errorText(nullptr), errorOffset(0), code(nullptr), execOptions(0),
      resultCode(Pcre::c_noMatch), ovectorSize(c_ovectorSize)
{
    std::fill(std::begin(ovector), std::end(ovector), -1);
}

MatchResult::~MatchResult()
{
    Pcre::Free(code);
}

bool MatchResult::Success()
{
    return !errorText && resultCode >= 0;
}

} // namespace Toolkit
