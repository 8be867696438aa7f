#pragma once

#include <toolkit/config/CmdLineParser.h>

#include "Terminal.h"

/// What the host's own command line may say; everything else on it is ignored.
struct Options {
    using Option = Toolkit::smart_ptr<Toolkit::CmdLineOption>;

    Option config = MakeOption(L"config");
    Option level = MakeOption(L"level");
    Option find = MakeOption(L"find");
    Option plugins = MakeOption(L"plugins");
    Option quiet = MakeOption(L"quiet");
    Option serve = MakeOption(L"serve");
    Option quit = MakeOption(L"quit");
    Option restart = MakeOption(L"restart");

    explicit Options(Toolkit::CmdLineParser parser)
    {
        for (const auto& option : {config, level, find, plugins, quiet, serve, quit, restart})
            parser.AddOption(option);
        parser.Parse();
    }

    static Text ValueOr(const Option& option, const Text& otherwise)
    {
        return option->IsDefined() ? option->GetValue() : otherwise;
    }

private:
    static Toolkit::CmdLineOption* MakeOption(const wchar_t* name)
    {
        return new Toolkit::CmdLineOption(name, false);
    }
};
