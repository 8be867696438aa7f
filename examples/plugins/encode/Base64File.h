#pragma once

#include "PlugIn.h"

// Files in Base64 (RFC 4648), of any size. The encoded text has lines of 76 characters; the
// decoder ignores white space.

bool EncodeToBase64(HostPlugIn::CommandRun& run);
bool DecodeFromBase64(HostPlugIn::CommandRun& run);
