#pragma once

#include "toolkit/core/TString.h"

#include <wx/textfile.h>

#include <string>

namespace Toolkit::Framework {

/// The list of lines of wxTextFile, with files read and written by the library itself: wxTextFile
/// prints a message for every failure, accepts overlong forms as UTF-8, and leaves half a file when
/// the disk is full.
class TextFileLines : public wxTextFile {
public:
    /// Replaces the lines by those of the file `path`; false, without lines, when it cannot be
    /// read.
    bool Load(const std::string& path);

    /// Replaces the file that was loaded; false, with the file as it was, when that fails.
    bool Save() const;

    /// Forgets the file and the lines.
    void Unload();

    /// Appends a line that ends in a line feed. One for which there is no memory is lost, and
    /// Save() fails from then on: it would replace the file by less.
    void Append(const std::wstring& line);

private:
    bool ReadBytes(const std::string& bytes);
    bool AddUtf8Lines(const char* begin, const char* end);
    template <typename Char, typename Decode>
    bool AddLines(const Char* begin, const Char* end, Decode decode);
    bool EncodeLines(std::string& bytes) const;

    std::string m_path; // empty while no file is loaded
    bool m_hasLostLine = false;
};

} // namespace Toolkit::Framework
