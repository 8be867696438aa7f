#include "toolkit/core/FSInputSerializer.h"

namespace Toolkit {

FSInputSerializer::FSInputSerializer(const TString<wchar_t>& path) : FSSerializer(path, OpenRead) {}

FSInputSerializer::~FSInputSerializer() = default;

} // namespace Toolkit
