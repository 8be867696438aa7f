#pragma once

#include "toolkit/core/TString.h"

class wxZipInputStream;

namespace Toolkit {

// Reads a word or a line from an archive's entry like a wxTextInputStream that is constructed for
// each call, with the same result and the same state of the stream.
//
// wxTextInputStream reads a byte at a time. These functions peek at the next bytes first. They use
// wxTextInputStream for anything but plain UTF-8 (byte-order marks, null bytes, other encodings),
// at the end of the entry, and for streams that are not the library's own.

void ReadEntryWord(wxZipInputStream& stream, TString<wchar_t>& word);
void ReadEntryLine(wxZipInputStream& stream, TString<wchar_t>& line);

} // namespace Toolkit
