#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

class ISerialize;
class IStream;

/// Joins objects to the stream that a derived class has.
class TOOLKIT_API Serializer {
public:
    virtual ~Serializer();

    virtual IStream& GetStream() const = 0;

    /// Lets `object` write itself; its result.
    unsigned int Serialize(const ISerialize& object) const;

    /// Lets `object` read itself; its result.
    unsigned int Deserialize(ISerialize& object);
};

} // namespace Toolkit
