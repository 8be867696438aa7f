#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// A listener for the messages that an `IPCServer` receives.
class TOOLKIT_API IPCConnectionEvent {
public:
    virtual ~IPCConnectionEvent();

    /// Called with the text of each message, under the lock of the server's list of listeners: on
    /// the thread that runs the event loop, or on the one that calls IPCServer::SendExecuteEvent().
    virtual void OnExecute(const TString<wchar_t>& text) = 0;
};

} // namespace Toolkit
