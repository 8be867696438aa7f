#pragma once

#include <cstddef>
#include <fstream>

#include "Terminal.h"

/// A file that readers see when it is complete, or not at all: it is written under a name beside
/// its own and then renamed. What stood under its name stays until then.
class ResultFile {
public:
    /// `id` tells it from other results for the same path that are being written by this process.
    ResultFile(const Text& path, unsigned int id);

    ~ResultFile();

    ResultFile(const ResultFile&) = delete;
    ResultFile& operator=(const ResultFile&) = delete;

    /// Each is false when the disk or the directory does not let it.
    bool Open();
    bool Write(const char* bytes, std::size_t count);
    bool Commit();

    /// Removes what was written unless Commit() was true. It is done with the object at the latest.
    void Discard();

    unsigned long long GetSize() const { return m_size; }

private:
    const std::string m_path;
    const std::string m_writtenPath;
    std::ofstream m_file;
    unsigned long long m_size = 0;
};
