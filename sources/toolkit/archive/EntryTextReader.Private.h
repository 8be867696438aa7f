#pragma once

#include "toolkit/core/TString.h"

class wxZipInputStream;

/// Reads a word or a line from an archive's entry as wxTextInputStream does when it is
/// made anew for every call, with the same result and the same state of the stream.
///
/// That reader takes a byte at a time. Here the bytes that come next are looked at first; the
/// framework's reader does what is no plain UTF-8 (byte-order marks, null bytes and other
/// encodings), what the end of the entry cuts off, and streams that are not the library's own.
namespace Toolkit::EntryTextReader {

void ReadWord(wxZipInputStream& stream, TString<wchar_t>& word);
void ReadLine(wxZipInputStream& stream, TString<wchar_t>& line);

} // namespace Toolkit::EntryTextReader
