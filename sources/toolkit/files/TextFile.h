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
/// Lines end at a line feed, a carriage return or both, and each keeps its own kind of end. One
/// object is used by one thread at a time. Only the results report failures; nothing is
/// logged. Only GetFirstLine() and GetNextLine() throw std::bad_alloc, with the cursor where it
/// was: an empty string would be a line.
class TOOLKIT_API TextFile {
public:
    TextFile();
    ~TextFile();

    /// Reads the file `name` in place of the lines of another; false, with an empty list, when it
    /// cannot be read or decoded. A pipe is read to its end, and waited for like open(2) does.
    ///
    /// A byte-order mark of UTF-16 or UTF-32 decides the encoding, and every mark is dropped. Any
    /// other file is UTF-8, or ISO 8859-1 when anything in it is not valid UTF-8.
    bool Open(const TString<wchar_t>& name);

    /// Empties the list and leaves the file alone. Always true.
    bool Close();

    /// Writes all lines back to the file that was opened, in UTF-8 and with their line ends. False
    /// when no file is open, when it is a pipe or a device, and when anything cannot be written;
    /// the file is as it was then. A file that was deleted meanwhile is created again.
    bool Write();

    /// Moves the cursor to the first line and returns it; empty when there is none.
    TString<wchar_t> GetFirstLine();

    /// Moves the cursor to the next line and returns it. On the last line the cursor stays and the
    /// result is empty.
    TString<wchar_t> GetNextLine();

    /// Whether the list is empty or the cursor is on the last line. Handle the first line before
    /// you ask, as above.
    bool Eof() const;

    void Clear();

    /// Appends a line that ends in a line feed. When out of memory it is lost; Write() is false
    /// then until a file is opened again.
    void AddLine(const TString<wchar_t>& line);

private:
    std::unique_ptr<Framework::TextFileLines> m_lines;
};

} // namespace Toolkit
