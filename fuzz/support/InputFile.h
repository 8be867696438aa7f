#pragma once

#include "toolkit/core/TString.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

/// The input file of a target that tests a file format. The destructor removes it.
class InputFile {
public:
    InputFile()
    {
        std::string name = (std::filesystem::temp_directory_path() / "fuzz-XXXXXX").native();
        const int file = ::mkstemp(name.data());
        if (file < 0)
            std::abort();
        ::close(file);
        m_path = name;
    }
    ~InputFile() { ::unlink(m_path.c_str()); }

    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    const std::string& NativePath() const { return m_path; }

    TString<wchar_t> Path() const { return std::wstring(m_path.begin(), m_path.end()); }

    void Write(const std::uint8_t* data, std::size_t size) const
    {
        std::ofstream file(m_path, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    void Write(const std::string& bytes) const
    {
        Write(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }

private:
    std::string m_path;
};
