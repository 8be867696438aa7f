#include "InputFile.h"

InputFile::InputFile(HostPlugIn::CommandRun& run) : m_run(run) {}

bool InputFile::Open()
{
    const TString<wchar_t>& path = m_run.GetValue(L"in");
    // Not GetLength(), which returns only 32 bits.
    if (!m_file.Open(path, L"rb") || !m_file.SeekEnd(0))
        return m_run.Fail(L"cannot read " + path);
    m_length = static_cast<unsigned long long>(m_file.GetOffset());
    return m_file.Seek(0, true);
}

bool InputFile::Read(std::string& block, unsigned int size)
{
    const long long begin = m_file.GetOffset();
    block.resize(size);
    if (!m_file.Read(block.data(), size)) {
        m_isAtEnd = m_file.IsEOF();
        return m_isAtEnd ? false : m_run.Fail(L"cannot continue reading " + m_run.GetValue(L"in"));
    }
    const long long end = m_file.GetOffset();
    block.resize(static_cast<std::size_t>(end - begin));
    return m_run.ReportProgress(static_cast<unsigned long long>(end), m_length, L"bytes");
}
