#pragma once

#include <exception>
#include <toolkit/core/TString.h>

#include "Output.h"

namespace Tool {

/// A service that prints each message on a line of its own.
class IpcListener {
public:
    /// Stops after `count` messages; 0 means no limit.
    IpcListener(Output& output, unsigned int count) : m_output(output), m_count(count) {}

    /// Listens until the last message or a stop signal; returns an exit code. Throws a `Failure` if
    /// it cannot listen, and rethrows exceptions of the output.
    int Run(const TString<wchar_t>& service);

    /// Prints a message, and ends the event loop after the last one.
    void Receive(const TString<wchar_t>& text);

    /// Ends the event loop after a stop signal, or if nobody reads the output any more.
    void CheckStopConditions();

private:
    void End();

    Output& m_output;
    const unsigned int m_count;
    unsigned int m_received = 0;
    std::exception_ptr m_failure; // thrown by the output
};

} // namespace Tool
