#include "InputPath.h"

#include <toolkit/encoding/UTF8.h>

#include "Failure.h"
#include "TemporaryFile.h"

namespace Tool {

TString<wchar_t> ToWideArgument(const std::string& argument)
{
    TString<wchar_t> wide = Toolkit::UTF8::ToUNICODE(argument);
    if (wide.empty() && !argument.empty())
        throw Failure("not UTF-8: " + argument);
    return wide;
}

InputPath::InputPath(const std::string& argument) : m_argument(argument), m_path(argument)
{
    if (argument == "-") {
        m_standardInput = Descriptor(SpoolToFile(STDIN_FILENO));
        m_path = "/dev/fd/" + std::to_string(m_standardInput.Get());
    }
    m_wide = ToWideArgument(m_path);
}

} // namespace Tool
