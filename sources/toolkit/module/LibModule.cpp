#include "toolkit/module/LibModule.h"

namespace Toolkit {

LibModule::~LibModule() = default;

} // namespace Toolkit
