#include "SelfTest.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <toolkit/Toolkit.h>
#include <unistd.h>

using namespace Toolkit;

namespace Tool {
namespace {

using Text = TString<wchar_t>;

// A new directory, which the destructor removes with its contents.
class TemporaryDirectory {
public:
    TemporaryDirectory()
    {
        char path[] = "/tmp/toolkit-check-XXXXXX";
        if (::mkdtemp(path))
            m_path = path;
    }
    ~TemporaryDirectory()
    {
        std::error_code ignored;
        if (!m_path.empty())
            std::filesystem::remove_all(m_path, ignored);
    }

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    Text MakePath(const char* name) const { return UTF8::ToUNICODE(m_path + "/" + name); }

private:
    std::string m_path;
};

constexpr const wchar_t* c_text = L"h\u00E9llo \u6F22\U0001F600";

bool WriteText(const Text& path, const Text& text)
{
    FFile file;
    if (!file.Open(path, L"w"))
        return false;
    file.Write(text);
    return file.Close();
}

bool CheckText()
{
    return UTF8::ToUNICODE(UTF8::ToUTF8(c_text)) == c_text &&
           StringConvert::UStringFromDouble(0.5) == L"0.5";
}

bool CheckPatterns()
{
    const RegExp pattern(TString<char>("(?<word>\\w+)$"), RegExpOptions::None);
    return pattern.Match("two words")->GetGroup("word")->value == "words";
}

bool CheckDates()
{
    Text format;
    return Locales::GetCurrentDateFormat(format) && format.size() > 1 && GetTickCount() > 0;
}

bool CheckFiles()
{
    const TemporaryDirectory directory;
    const Text path = directory.MakePath("text");
    TextFile file;
    return WriteText(path, c_text) && file.Open(path) && file.GetFirstLine() == c_text;
}

bool CheckSettings()
{
    const TemporaryDirectory directory;
    const Text path = directory.MakePath("settings.ini");
    return WriteText(path, L"[Main]\nwidth = 640\n") &&
           IniFile(path).GetUint32(L"Main", L"width", 0) == 640;
}

bool CheckThreads()
{
    class Worker : public Thread {
    public:
        ~Worker() override { Wait(); }

        bool IsDone() const { return m_isDone; }

    private:
        int DoWork() override
        {
            m_isDone = true;
            return 0;
        }

        std::atomic<bool> m_isDone{false};
    };

    // Does not use the exit code: Wait() does not return it if the thread has already ended.
    Worker worker;
    if (!worker.Run())
        return false;
    worker.Wait();
    return worker.IsDone();
}

// Destroying the logger writes its queue, so the file can be read afterwards.
bool CheckLog()
{
    constexpr unsigned int sizeLimit = 1000;
    constexpr unsigned int maxWaitMs = 500;

    const Text name = L"toolkit-check-" + StringConvert::UStringFromUint32(GetTickCount());
    smart_ptr<FileLogger> logger(new FileLogger(SeverityInfo, name, sizeLimit));
    const Text path = logger->GetPath(maxWaitMs);
    logger->Write(c_text);
    logger = smart_ptr<FileLogger>();
    TextFile file;
    const bool isWritten = file.Open(path) && file.GetFirstLine() == c_text;
    return Directory::RemoveFile(path) && isWritten;
}

} // namespace

const std::vector<SelfTest>& ListSelfTests()
{
    static const std::vector<SelfTest> tests = {
        {"text", CheckText},         {"regular expressions", CheckPatterns},
        {"dates", CheckDates},       {"files", CheckFiles},
        {"settings", CheckSettings}, {"threads", CheckThreads},
        {"log", CheckLog},
    };
    return tests;
}

} // namespace Tool
