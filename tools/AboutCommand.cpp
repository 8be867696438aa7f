#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/regExp/RegExp.h>
#include <toolkit/system/Locales.h>
#include <toolkit/system/SystemInfo.h>

#include "Commands.h"
#include "LibraryVersion.h"
#include "Output.h"
#include "SelfTest.h"

using namespace Toolkit;

namespace Tool {
namespace {

int PrintVersions(Output& output)
{
    const std::string lines[] = {
        "Toolkit " + GetLibraryVersion(),
        UTF8::ToUTF8(SystemInfo::GetFrameworkVersion()),
        RegExp::GetEngineVersion(),
        UTF8::ToUTF8(Locales::GetProviderVersion()),
        TOOLKIT_BUILD_OPTIONS,
    };
    for (const std::string& line : lines)
        output.Write(line + "\n");
    return ExitSuccess;
}

int RunSelfTests(Output& output)
{
    bool allPassed = true;
    for (const SelfTest& test : ListSelfTests()) {
        const bool passed = test.run();
        output.Write(passed ? "good " : "bad  ", passed ? Output::Green : Output::Red);
        output.Write(std::string(test.name) + "\n");
        allPassed = allPassed && passed;
    }
    return allPassed ? ExitSuccess : ExitNegative;
}

} // namespace

void AddAboutCommand(CLI::App& app, Action& action)
{
    CLI::App* const about = app.add_subcommand("about", "Print versions, or test the library");
    const auto shouldTest = std::make_shared<bool>(false);
    about->add_flag("-c,--check", *shouldTest,
                    "Test the library on this machine (takes about a second)");
    about->callback([shouldTest, &action] {
        action = [shouldTest](Output& output) {
            return *shouldTest ? RunSelfTests(output) : PrintVersions(output);
        };
    });
}

} // namespace Tool
