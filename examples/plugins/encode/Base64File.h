#pragma once

#include "PlugIn.h"

/// Files in Base64 (RFC 4648), of any size. The encoded text has lines of 76 characters; the
/// decoder ignores white space.
namespace Base64File {

bool Encode(HostPlugIn::CommandRun& run);
bool Decode(HostPlugIn::CommandRun& run);

} // namespace Base64File
