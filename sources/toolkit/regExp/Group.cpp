#include "toolkit/regExp/Group.h"

namespace Toolkit {

Group::Group(const TString<char>& text, unsigned short number)
    : name(TString<char>::Empty()), value(text), index(number)
{
}

} // namespace Toolkit
