#pragma once

#include <exception>
#include <toolkit/core/TString.h>

#include "Output.h"

namespace Tool {

/// A service that prints each message on a line of its own.
class IpcListener {
public:
    /// Ends after `count` messages; 0 means never.
    IpcListener(Output& output, unsigned int count) : m_output(output), m_count(count) {}

    /// Listens until a signal asks to stop; returns an exit code. Throws a `Failure` when it cannot
    /// listen.
    int Run(const TString<wchar_t>& service);

    /// Prints a message.
    void Receive(const TString<wchar_t>& text);

    /// Ends the event loop when it is time.
    void EndWhenDone();

private:
    void End();

    Output& m_output;
    const unsigned int m_count;
    unsigned int m_received = 0;
    std::exception_ptr m_failure; // of the output
};

} // namespace Tool
