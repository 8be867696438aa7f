#pragma once

#include "toolkit/core/TString.h"

#include <wx/textfile.h>

#include <string>

namespace Toolkit::Framework {

/// The lines of a wxTextFile. The library reads and writes the file itself, because wxTextFile logs
/// every failure, accepts overlong encodings as UTF-8, and leaves half a file when the disk is
/// full.
class TextFileLines : public wxTextFile {
public:
    /// Loads the lines of the file `path`. Returns false, without lines, if it cannot be read or
    /// decoded. Throws `std::bad_alloc`; lines loaded so far then remain, but Save() fails.
    bool Load(const std::string& path);

    /// Replaces the loaded file with the lines, each with its line ending, in UTF-8 without a
    /// byte-order mark, whatever the encoding was. Returns false, with the file unchanged, if that
    /// fails or no file is loaded. Throws `std::bad_alloc`.
    bool Save() const;

    /// Forgets the file and the lines.
    void Unload();

    /// Appends `line`, ended by a line feed. If memory runs out, this line or all lines are lost,
    /// and Save() fails until the next Load(), because it would write an incomplete file.
    void Append(const std::wstring& line);

private:
    void AddLines(const std::string& text);
    bool EncodeLines(std::string& bytes) const;

    std::string m_path; // empty while no file is loaded
    bool m_hasLostLine = false;
};

} // namespace Toolkit::Framework
