#pragma once

#include "Terminal.h"

// How a start of the host finds the serving host and sends it a line.

/// Lines that are not commands.
extern const wchar_t* const c_serve;
extern const wchar_t* const c_quit;
extern const wchar_t* const c_restart;

/// The socket of the serving host: the same for all starts of one program by one user.
Text GetServicePath();

/// The result of a start of the host.
enum class HandOverRole {
    First,      ///< No other one is known to run.
    HandedOver, ///< Another one serves and has received the line.
    NotServed   ///< Another one runs, and has not taken the line within 15 seconds.
};

/// Sends `line` to the serving host. Waits while another host runs that does not serve: it starts,
/// stops or ends soon.
///
/// A host that answers counts even if the single-instance lock is free: nobody can take that lock
/// in a read-only home directory.
HandOverRole SendToServingHost(const Text& line);
