#include "toolkit/core/smart_ptr.h"

namespace Toolkit {

IReleaseListener::~IReleaseListener() = default;

} // namespace Toolkit
