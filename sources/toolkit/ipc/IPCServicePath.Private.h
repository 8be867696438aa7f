#pragma once

#include <string>

namespace Toolkit {

/// The path of the socket file that stands for `service`: at most as long as the system lets an
/// address be. Empty when the name stands for none.
std::string IPCServicePath(const std::wstring& service);

} // namespace Toolkit
