#pragma once

#include "toolkit/logging/ILogger.h"

namespace Toolkit {

/// A logger that discards everything.
class TOOLKIT_API NullLogger : public ILogger {
public:
    NullLogger();
    ~NullLogger() override;

    void Write(const TString<wchar_t>& text) override;
};

} // namespace Toolkit
