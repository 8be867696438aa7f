// A plug-in of the example host that encodes files for mail and decodes them:
//
//     encode -in <file> -as base64|quoted-printable
//     decode -in <file> -as base64|quoted-printable

#include <iterator>
#include <toolkit/Toolkit.h>

#include "Base64File.h"
#include "PlugIn.h"
#include "QuotedPrintableFile.h"
#include "StartStopLog.h"

using namespace HostPlugIn;
using namespace Toolkit;

namespace {

StartStopLog s_module(L"encode");
const ModuleRegistration s_registration(s_module);

// Runs the function for the encoding that the user chose.
bool RunChosen(CommandRun& run, bool (*base64)(CommandRun&), bool (*quotedPrintable)(CommandRun&))
{
    const TString<wchar_t>& encoding = run.GetValue(L"as");
    if (encoding == L"base64")
        return base64(run);
    if (encoding == L"quoted-printable")
        return quotedPrintable(run);
    return run.Fail(L"the encoding must be base64 or quoted-printable, not \"" + encoding + L"\"");
}

bool Encode(CommandRun& run)
{
    return RunChosen(run, EncodeToBase64, EncodeToQuotedPrintable);
}

bool Decode(CommandRun& run)
{
    return RunChosen(run, DecodeFromBase64, DecodeFromQuotedPrintable);
}

constexpr Option c_options[] = {{L"in", Option::Path, true}, {L"as", Option::Value, true}};
constexpr Command c_commands[] = {
    {L"encode", L"a file encoded in Base64, or a text file in quoted-printable", c_options,
     std::size(c_options), RunGuarded<Encode>},
    {L"decode", L"the original of an encoded file", c_options, std::size(c_options),
     RunGuarded<Decode>},
};

} // namespace

const PlugIn* GetHostPlugIn() noexcept
{
    static const PlugIn plugIn{c_interfaceVersion, L"encode", s_registration.GetFailure(),
                               c_commands, std::size(c_commands)};
    return &plugIn;
}
