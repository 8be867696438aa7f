#include "ResultFile.h"

#include <wx/utils.h>

#include <filesystem>
#include <toolkit/encoding/UTF8.h>

using namespace Toolkit;

ResultFile::ResultFile(const Text& path, unsigned int id)
    : m_path(UTF8::ToUTF8(path)),
      m_writtenPath(m_path + "." + std::to_string(wxGetProcessId()) + "-" + std::to_string(id))
{
}

ResultFile::~ResultFile()
{
    Discard();
}

bool ResultFile::Open()
{
    m_file.open(m_writtenPath, std::ios::binary);
    return m_file.is_open();
}

bool ResultFile::Write(const char* bytes, std::size_t count)
{
    m_file.write(bytes, static_cast<std::streamsize>(count));
    m_size += count;
    return m_file.good();
}

bool ResultFile::Commit()
{
    if (!m_file.flush())
        return false;
    std::error_code error;
    std::filesystem::rename(m_writtenPath, m_path, error);
    if (error)
        return false;
    m_file.close();
    return true;
}

void ResultFile::Discard()
{
    if (!m_file.is_open())
        return;
    m_file.close();
    std::error_code ignored;
    std::filesystem::remove(m_writtenPath, ignored);
}
