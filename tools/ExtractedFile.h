#pragma once

#include <string>
#include <string_view>

#include "Descriptor.h"

namespace Tool {

/// A file that appears under its name only when it is complete.
class ExtractedFile {
public:
    /// Creates a temporary file in `directory`; Commit() makes it appear there as `name`. Throws a
    /// `Failure` if the file cannot be created, for example because this process has another
    /// ExtractedFile for the same directory.
    ExtractedFile(Descriptor directory, const std::string& name);
    /// Removes the temporary file.
    ~ExtractedFile();

    ExtractedFile(const ExtractedFile&) = delete;
    ExtractedFile& operator=(const ExtractedFile&) = delete;

    /// Appends `bytes`. Throws a `Failure` if they cannot be written.
    void Write(std::string_view bytes);

    /// Makes the file appear under its name. Throws a `Failure` if that fails, or if a file of that
    /// name already exists: Commit() replaces no file.
    void Commit();

private:
    const Descriptor m_directory;
    const std::string m_name;
    const std::string m_temporaryName;
    const Descriptor m_file;
};

} // namespace Tool
