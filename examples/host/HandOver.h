#pragma once

#include "Terminal.h"

/// How one start of the host finds the one that serves and sends it a line.
namespace HandOver {

/// Lines that are no commands.
extern const wchar_t* const c_serve;
extern const wchar_t* const c_quit;
extern const wchar_t* const c_restart;

/// The socket of the host that serves: the same for all starts of one program by one user.
Text ServicePath();

/// What a start of the host turns out to be.
enum class Role {
    First,      ///< No other one is known to run.
    HandedOver, ///< Another one serves and has received the line.
    NotServed   ///< Another one runs, and has not taken the line within 15 seconds.
};

/// Sends `line` to the host that serves. Waits while another host runs that does not serve: it is
/// starting or stopping, or is soon done.
///
/// A host that answers counts, whatever the lock of the single instance says: that cannot be taken
/// in a home directory that is read-only.
Role Send(const Text& line);

} // namespace HandOver
