#pragma once

#include <exception>
#include <toolkit/core/TString.h>

#include "Output.h"

namespace Tool {

/// A service that prints each message on a line of its own.
class IpcListener {
public:
    /// Stops after `maxMessages` messages; 0 means no limit.
    IpcListener(Output& output, unsigned int maxMessages)
        : m_output(output), m_maxMessages(maxMessages)
    {
    }

    /// Listens until the last message or a stop signal; returns an exit code. Throws a `Failure` if
    /// it cannot listen, and any exception that the output throws.
    int Run(const TString<wchar_t>& service);

    /// Prints a message, and ends the event loop after the last one.
    void Receive(const TString<wchar_t>& text);

    /// Ends the event loop if a stop signal has arrived or the output has lost its reader.
    void CheckStopConditions();

private:
    void EndEventLoop();

    Output& m_output;
    const unsigned int m_maxMessages;
    unsigned int m_messages = 0;  // number received so far
    std::exception_ptr m_failure; // thrown by the output
};

} // namespace Tool
