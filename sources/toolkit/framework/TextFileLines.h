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
    /// Loads the lines of the file `path`; false, without lines, when it cannot be read.
    bool Load(const std::string& path);

    /// Replaces the loaded file with the lines; false, with the file unchanged, when that fails.
    bool Save() const;

    /// Forgets the file and the lines.
    void Unload();

    /// Appends `line`, ended by a line feed. If memory runs out, the line is lost, and Save() fails
    /// from then on, because it would write an incomplete file.
    void Append(const std::wstring& line);

private:
    void AddLines(const std::string& text);
    bool EncodeLines(std::string& bytes) const;

    std::string m_path; // empty while no file is loaded
    bool m_hasLostLine = false;
};

} // namespace Toolkit::Framework
