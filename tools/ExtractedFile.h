#pragma once

#include <string>
#include <string_view>

#include "Descriptor.h"

namespace Tool {

/// A file that appears under its name when it is complete, and not at all otherwise.
class ExtractedFile {
public:
    /// Prepares the file `name` in a directory. Throws a `Failure` when it cannot.
    ExtractedFile(Descriptor directory, const std::string& name);
    ~ExtractedFile();

    ExtractedFile(const ExtractedFile&) = delete;
    ExtractedFile& operator=(const ExtractedFile&) = delete;

    void Write(std::string_view bytes);

    /// Gives the file its name. Throws a `Failure` when the name is taken.
    void Commit();

private:
    const Descriptor m_directory;
    const std::string m_name;
    const std::string m_temporaryName;
    const Descriptor m_file;
};

} // namespace Tool
