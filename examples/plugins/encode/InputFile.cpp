#include "InputFile.h"

InputFile::InputFile(HostPlugIn::CommandRun& run) : m_run(run) {}

bool InputFile::Open()
{
    const TString<wchar_t>& path = m_run.GetValue(L"in");
    // Exists() is false for a pipe; opening one could block forever. SeekEnd() finds the length,
    // because GetLength() returns only the low 32 bits.
    if (!Toolkit::FFile::Exists(path) || !m_file.Open(path, L"rb") || !m_file.SeekEnd(0))
        return m_run.Fail(L"cannot read " + path);
    m_length = static_cast<unsigned long long>(m_file.GetOffset());
    return m_file.Seek(0, true) || m_run.Fail(L"cannot read " + path);
}

bool InputFile::Read(std::string& block, unsigned int size)
{
    const long long begin = m_file.GetOffset();
    block.resize(size);
    if (!m_file.Read(block.data(), size)) {
        m_isAtEnd = m_file.IsEOF();
        if (!m_isAtEnd)
            m_run.Fail(L"cannot continue reading " + m_run.GetValue(L"in"));
        return false;
    }
    const long long end = m_file.GetOffset();
    block.resize(static_cast<std::size_t>(end - begin));
    return m_run.ReportProgress(static_cast<unsigned long long>(end), m_length, L"bytes");
}
