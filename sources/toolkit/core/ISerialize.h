#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

class IStream;

/// An object that can write itself to a stream and read itself back.
class TOOLKIT_API ISerialize {
public:
    virtual ~ISerialize();

    /// Writes the object. Returns a code of `StreamResult`, or one of the object's own.
    virtual unsigned int Serialize(IStream& stream) const = 0;

    /// Reads what `Serialize` wrote. Returns a code of `StreamResult`, or one of the object's own.
    virtual unsigned int Deserialize(IStream& stream) = 0;
};

} // namespace Toolkit
