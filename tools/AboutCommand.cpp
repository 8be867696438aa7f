#include <CLI/CLI.hpp>
#include <memory>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/regExp/RegExp.h>
#include <toolkit/system/Locales.h>
#include <toolkit/system/SystemInfo.h>
#include <toolkit/system/Version.h>

#include "Commands.h"
#include "Output.h"
#include "SelfTest.h"

using namespace Toolkit;

namespace Tool {
namespace {

int PrintVersions(Output& output)
{
    const std::unique_ptr<Version> version(Version::Create());
    const std::string lines[] = {
        "Toolkit " + UTF8::ToUTF8(version->ToString()),
        UTF8::ToUTF8(SystemInfo::GetFrameworkVersion()),
        RegExp::GetEngineVersion(),
        UTF8::ToUTF8(Locales::GetProviderVersion()),
        TOOLKIT_BUILD_OPTIONS,
    };
    for (const std::string& line : lines)
        output.Write(line + "\n");
    return ExitGood;
}

int Check(Output& output)
{
    bool haveAllPassed = true;
    for (const SelfTest& test : ListSelfTests()) {
        const bool hasPassed = test.run();
        output.Write(hasPassed ? "good " : "bad  ", hasPassed ? Output::Green : Output::Red);
        output.Write(std::string(test.name) + "\n");
        haveAllPassed = haveAllPassed && hasPassed;
    }
    return haveAllPassed ? ExitGood : ExitNo;
}

} // namespace

void AddAboutCommand(CLI::App& app, Action& action)
{
    CLI::App* const about = app.add_subcommand("about", "Print versions, or test the library");
    const auto isCheck = std::make_shared<bool>(false);
    about->add_flag("-c,--check", *isCheck,
                    "Test the library on this machine (takes about a second)");
    about->callback([isCheck, &action] {
        action = [isCheck](Output& output) {
            return *isCheck ? Check(output) : PrintVersions(output);
        };
    });
}

} // namespace Tool
