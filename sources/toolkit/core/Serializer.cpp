#include "toolkit/core/Serializer.h"

#include "toolkit/core/ISerialize.h"

namespace Toolkit {

Serializer::~Serializer() = default;

unsigned int Serializer::Serialize(const ISerialize& object) const
{
    return object.Serialize(GetStream());
}

unsigned int Serializer::Deserialize(ISerialize& object)
{
    return object.Deserialize(GetStream());
}

} // namespace Toolkit
