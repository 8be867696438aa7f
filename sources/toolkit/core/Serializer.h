#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

class ISerialize;
class IStream;

/// Connects objects to the stream of a derived class.
class TOOLKIT_API Serializer {
public:
    virtual ~Serializer();

    virtual IStream& GetStream() const = 0;

    /// Lets `object` write itself to the stream and returns its result.
    unsigned int Serialize(const ISerialize& object) const;

    /// Lets `object` read itself from the stream and returns its result.
    unsigned int Deserialize(ISerialize& object);
};

} // namespace Toolkit
