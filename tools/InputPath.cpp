#include "InputPath.h"

#include <fcntl.h>
#include <toolkit/encoding/UTF8.h>

#include "TemporaryFile.h"

namespace Tool {

TString<wchar_t> ToWideArgument(const std::string& argument)
{
    TString<wchar_t> wide = Toolkit::UTF8::ToUNICODE(argument);
    if (wide.empty() && !argument.empty())
        throw Failure("the argument is not UTF-8: " + argument);
    return wide;
}

InputPath::InputPath(const std::string& argument) : m_argument(argument), m_path(argument)
{
    if (argument == "-") {
        m_standardInput = SpoolToFile(STDIN_FILENO);
        m_path = "/dev/fd/" + std::to_string(m_standardInput.Get());
    }
    m_wide = ToWideArgument(m_path);
}

Failure MakeReadFailure(const InputPath& path)
{
    const std::string what = "cannot read " + path.GetArgument();
    const Descriptor file(::open(path.GetPath().c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    char byte = 0;
    if (!file.IsOpen() || ::read(file.Get(), &byte, 1) < 0)
        return MakeSystemFailure(what);
    return Failure(what);
}

} // namespace Tool
