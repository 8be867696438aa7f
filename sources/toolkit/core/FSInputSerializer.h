#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/FSSerializer.h"

namespace Toolkit {

/// Reads objects from an existing file.
class TOOLKIT_API FSInputSerializer : public FSSerializer {
public:
    explicit FSInputSerializer(const TString<wchar_t>& path);
    ~FSInputSerializer() override;
};

} // namespace Toolkit
