#include "toolkit/core/ISerialize.h"

namespace Toolkit {

ISerialize::~ISerialize() = default;

} // namespace Toolkit
