#include "toolkit/core/FSOutputSerializer.h"

namespace Toolkit {

FSOutputSerializer::FSOutputSerializer(const TString<wchar_t>& path) : FSSerializer(path, OpenWrite)
{
}

FSOutputSerializer::~FSOutputSerializer() = default;

} // namespace Toolkit
