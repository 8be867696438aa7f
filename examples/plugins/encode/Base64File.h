#pragma once

#include "PlugIn.h"

// Encode files of any size to Base64 (RFC 4648) and decode them. The encoded text has lines of 76
// characters; the decoder ignores white space.

bool EncodeToBase64(HostPlugIn::CommandRun& run);
bool DecodeFromBase64(HostPlugIn::CommandRun& run);
