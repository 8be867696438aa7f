#pragma once

#include "PlugIn.h"

// Encode UTF-8 text files to quoted-printable (RFC 2045, section 6.7) and decode them. Encoded
// lines have 76 characters at most and end in a carriage return and a line feed; decoded lines end
// in a line feed.

bool EncodeToQuotedPrintable(HostPlugIn::CommandRun& run);
bool DecodeFromQuotedPrintable(HostPlugIn::CommandRun& run);
