#pragma once

#include <toolkit/files/TextFile.h>
#include <toolkit/logging/Log.h>
#include <toolkit/threading/Thread.h>

/// Reads a text file on its own thread, and logs and counts the lines that contain a string,
/// regardless of case.
///
/// Run() starts the search; the results may be read after Wait().
class TextSearch : public Toolkit::Thread {
public:
    TextSearch(const TString<wchar_t>& path, const TString<wchar_t>& wanted)
        : m_path(path), m_wanted(wanted)
    {
    }

    // The thread uses members of this class, so it must end before they are destroyed.
    ~TextSearch() override { Wait(); }

    bool HasReadFile() const { return m_hasReadFile; }
    unsigned int GetLineCount() const { return m_lineCount; }
    unsigned int GetHitCount() const { return m_hitCount; }

protected:
    int DoWork() override
    {
        Toolkit::TextFile file;
        m_hasReadFile = file.Open(m_path);
        if (!m_hasReadFile)
            return 1;

        // Eof() is already true on the last line, so examine each line before checking Eof().
        Examine(file.GetFirstLine());
        while (!file.Eof())
            Examine(file.GetNextLine());
        return 0;
    }

private:
    void Examine(const TString<wchar_t>& line)
    {
        ++m_lineCount;
        if (!line.HasSubstring(m_wanted))
            return;
        ++m_hitCount;
        TOOLKIT_LOG(Toolkit::SeverityInfo)
            << L"line " << m_lineCount << L": " << line << Toolkit::ILogger::c_strLogToken3;
    }

    const TString<wchar_t> m_path;
    const TString<wchar_t> m_wanted;
    bool m_hasReadFile = false;
    unsigned int m_lineCount = 0;
    unsigned int m_hitCount = 0;
};
