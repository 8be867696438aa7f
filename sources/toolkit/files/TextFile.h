#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

#include <memory>

namespace Toolkit {

namespace Framework {
class TextFileLines;
}

/// A whole text file as a list of lines.
///
///     TextFile file;
///     if (file.Open(L"notes.txt")) {
///         Use(file.GetFirstLine());
///         while (!file.Eof())
///             Use(file.GetNextLine());
///     }
///
/// A line ends in a line feed, a carriage return or both, and keeps its line ending when it is
/// written. One object is used by one thread at a time. Only the results report failures; nothing
/// is logged. When out of memory, only GetFirstLine() and GetNextLine() throw `std::bad_alloc`,
/// because an empty result would look like a line; the cursor stays where it was.
class TOOLKIT_API TextFile {
public:
    TextFile();
    ~TextFile();

    /// Replaces the lines with those of the file `name`, and moves the cursor to the first. If the
    /// file cannot be read or decoded, or does not fit into memory, returns false and leaves the
    /// list empty. Blocks like open(2) on a pipe, and reads it to its end.
    ///
    /// A byte-order mark of UTF-16 or UTF-32 decides the encoding. Any other file is UTF-8, or ISO
    /// 8859-1 if anything in it is not valid UTF-8. Byte-order marks are dropped, that of UTF-8
    /// too.
    bool Open(const TString<wchar_t>& name);

    /// Empties the list and forgets the file, without changing it. Always returns true.
    bool Close();

    /// Writes all lines back to the file that was opened, in UTF-8 without a byte-order mark. False
    /// if no file is open, if it is a pipe or a device, and if anything cannot be written; the file
    /// is then unchanged. Creates the file again if it has been deleted. An existing file keeps its
    /// permissions, but not its owner or other hard links, because a new file takes its place.
    bool Write();

    /// Moves the cursor to the first line and returns that line; empty if the list is empty.
    TString<wchar_t> GetFirstLine();

    /// Moves the cursor to the next line and returns that line. On the last line the cursor stays
    /// and the result is empty.
    TString<wchar_t> GetNextLine();

    /// Whether the list is empty or the cursor is on the last line. Process the first line before
    /// calling Eof(), as in the example.
    bool Eof() const;

    /// Removes all lines; Write() still writes to the same file.
    void Clear();

    /// Appends `line`, which will end in a line feed. When out of memory, the line is lost, perhaps
    /// with all others, and Write() fails until a file is opened again.
    void AddLine(const TString<wchar_t>& line);

private:
    std::unique_ptr<Framework::TextFileLines> m_lines;
};

} // namespace Toolkit
