#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

class ISerialize;
class IStream;

/// Writes objects to the stream of a derived class, and reads them from it.
class TOOLKIT_API Serializer {
public:
    virtual ~Serializer();

    virtual IStream& GetStream() const = 0;

    /// Makes `object` write itself to the stream and returns the result of `object`.
    unsigned int Serialize(const ISerialize& object) const;

    /// Makes `object` read itself from the stream and returns the result of `object`.
    unsigned int Deserialize(ISerialize& object);
};

} // namespace Toolkit
