#include "toolkit/core/IStream.h"

namespace Toolkit {

IStream::~IStream() = default;

} // namespace Toolkit
