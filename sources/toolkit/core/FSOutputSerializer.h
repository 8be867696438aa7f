#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/FSSerializer.h"

namespace Toolkit {

/// Writes objects to a file, which it creates or truncates.
class TOOLKIT_API FSOutputSerializer : public FSSerializer {
public:
    explicit FSOutputSerializer(const TString<wchar_t>& path);
    ~FSOutputSerializer() override;
};

} // namespace Toolkit
