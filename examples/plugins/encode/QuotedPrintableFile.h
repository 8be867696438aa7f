#pragma once

#include "PlugIn.h"

// Text files in UTF-8 as quoted-printable (RFC 2045, section 6.7). The encoded text has lines of
// 76 characters at most that end in a carriage return and a line feed; decoded ones end in a line
// feed.

bool EncodeToQuotedPrintable(HostPlugIn::CommandRun& run);
bool DecodeFromQuotedPrintable(HostPlugIn::CommandRun& run);
