#include "toolkit/regExp/Group.h"

namespace Toolkit {

Group::Group(const TString<char>& text, unsigned short number) : value(text), index(number) {}

} // namespace Toolkit
