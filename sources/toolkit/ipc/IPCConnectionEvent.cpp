#include "toolkit/ipc/IPCConnectionEvent.h"

namespace Toolkit {

IPCConnectionEvent::~IPCConnectionEvent() = default;

} // namespace Toolkit
