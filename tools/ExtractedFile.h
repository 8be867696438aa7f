#pragma once

#include <string>
#include <string_view>

#include "Descriptor.h"

namespace Tool {

/// A file that appears under its name only when it is complete.
class ExtractedFile {
public:
    /// Creates a temporary file in `directory`; Commit() makes it appear there as `name`. A process
    /// has at most one object per directory at a time. Throws a `Failure` if it cannot.
    ExtractedFile(Descriptor directory, const std::string& name);
    /// Removes the temporary file.
    ~ExtractedFile();

    ExtractedFile(const ExtractedFile&) = delete;
    ExtractedFile& operator=(const ExtractedFile&) = delete;

    /// Appends `bytes`. Throws a `Failure` if they cannot be written.
    void Write(std::string_view bytes);

    /// Makes the file appear under its name. Never replaces a file: throws a `Failure` if one
    /// exists, and if the system reports an error.
    void Commit();

private:
    const Descriptor m_directory;
    const std::string m_name;
    const std::string m_temporaryName;
    const Descriptor m_file;
};

} // namespace Tool
