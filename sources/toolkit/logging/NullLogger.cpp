#include "toolkit/logging/NullLogger.h"

namespace Toolkit {

NullLogger::NullLogger() : ILogger(SeverityError) {}

NullLogger::~NullLogger() = default;

void NullLogger::Write(const TString<wchar_t>& /*text*/) {}

} // namespace Toolkit
