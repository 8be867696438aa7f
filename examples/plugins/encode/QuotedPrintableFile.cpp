#include "QuotedPrintableFile.h"

#include <cctype>
#include <string>
#include <toolkit/encoding/QuotedPrintable.h>
#include <toolkit/encoding/StringConvert.h>
#include <utility>

#include "InputFile.h"

using namespace Toolkit;

namespace {

using Text = TString<wchar_t>;

constexpr std::size_t c_maxLineLength = 76; // RFC 2045, section 6.7
constexpr unsigned int c_blockSize = 64 * 1024;
const char* const c_softBreak = "=\r\n";

bool ReadAll(HostPlugIn::CommandRun& run, std::string& bytes)
{
    InputFile file(run);
    if (!file.Open())
        return false;
    std::string block;
    while (file.Read(block, c_blockSize))
        bytes += block;
    return file.IsAtEnd();
}

// Calls `onLine` with each line's number, its bytes and whether a line feed ends it. Stops and
// returns false when a call returns false.
template <typename Action>
bool VisitLines(const std::string& bytes, Action onLine)
{
    unsigned int number = 0;
    for (std::size_t begin = 0; begin < bytes.size();) {
        const std::size_t end = bytes.find('\n', begin);
        const bool hasEnd = end != std::string::npos;
        if (!onLine(++number, bytes.substr(begin, end - begin), hasEnd))
            return false;
        begin = hasEnd ? end + 1 : bytes.size();
    }
    return true;
}

bool FailOnLine(HostPlugIn::CommandRun& run, unsigned int number, const Text& error)
{
    return run.Fail(run.GetValue(L"in") + L", line " + StringConvert::UStringFromUint32(number) +
                    L": " + error);
}

// Used instead of the library's soft breaks, which may split an escape; other decoders reject that.
std::string InsertSoftBreaks(const std::string& code)
{
    std::string lines;
    std::size_t begin = 0;
    while (code.size() - begin > c_maxLineLength) {
        std::size_t end = begin + c_maxLineLength - 1;
        if (code[end - 1] == '=')
            end -= 1;
        else if (code[end - 2] == '=')
            end -= 2;
        lines += code.substr(begin, end - begin) + c_softBreak;
        begin = end;
    }
    return lines + code.substr(begin);
}

// Removes a carriage return, and spaces and tabs that a mail transport may have appended.
void RemoveTrailingSpaces(std::string& line)
{
    line.erase(line.find_last_not_of(" \t\r") + 1);
}

bool IsHexDigit(char character)
{
    return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

// Whether all escapes are valid and there is no null byte. The decoder drops the "=" of an invalid
// escape, and everything after a null byte.
bool CanBeDecoded(const std::string& code)
{
    if (code.find('\0') != std::string::npos)
        return false;
    for (std::size_t at = code.find('='); at != std::string::npos; at = code.find('=', at + 1)) {
        if (at + 2 >= code.size() || !IsHexDigit(code[at + 1]) || !IsHexDigit(code[at + 2]) ||
            code.compare(at + 1, 2, "00") == 0)
            return false;
    }
    return true;
}

// Sets `bytes` to the decoded line; false if `code` is not quoted-printable.
bool DecodeLine(const std::string& code, std::string& bytes)
{
    bytes.clear();
    if (code.empty())
        return true;
    if (!CanBeDecoded(code))
        return false;
    bytes = UTF8::ToUTF8(QP::ToUNICODE(UTF8::ToUNICODE(code)));
    return !bytes.empty();
}

// Soft breaks may spread `code` over several lines of the file. `number` is the number of the last
// one, for the message.
bool WriteDecodedLine(HostPlugIn::CommandRun& run, unsigned int number, const std::string& code,
                      const char* lineEnd)
{
    std::string line;
    if (!DecodeLine(code, line))
        return FailOnLine(run, number, L"this is not quoted-printable text");
    line += lineEnd;
    return run.Write(line.data(), line.size());
}

} // namespace

bool EncodeToQuotedPrintable(HostPlugIn::CommandRun& run)
{
    std::string bytes;
    if (!ReadAll(run, bytes))
        return false;
    return VisitLines(bytes, [&](unsigned int number, const std::string& line, bool hasEnd) {
        const Text text = UTF8::ToUNICODE(line);
        if ((text.empty() && !line.empty()) || line.find('\0') != std::string::npos)
            return FailOnLine(run, number, L"this is not UTF-8 text");
        const std::string code =
            InsertSoftBreaks(UTF8::ToUTF8(QP::ToQP(text))) + (hasEnd ? "\r\n" : "");
        return run.Write(code.data(), code.size());
    });
}

bool DecodeFromQuotedPrintable(HostPlugIn::CommandRun& run)
{
    std::string bytes;
    if (!ReadAll(run, bytes))
        return false;
    std::string code; // the current line so far, without soft breaks
    unsigned int lastNumber = 0;
    const bool areWritten =
        VisitLines(bytes, [&](unsigned int number, std::string part, bool hasEnd) {
            lastNumber = number;
            RemoveTrailingSpaces(part);
            const bool hasSoftBreak = !part.empty() && part.back() == '=';
            if (hasSoftBreak)
                part.pop_back();
            code += part;
            if (hasSoftBreak)
                return true;
            const std::string line = std::exchange(code, {});
            return WriteDecodedLine(run, number, line, hasEnd ? "\n" : "");
        });
    // The file may end in a soft break.
    return areWritten && WriteDecodedLine(run, lastNumber, code, "");
}
