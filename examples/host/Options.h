#pragma once

#include <map>
#include <toolkit/config/CmdLineParser.h>
#include <vector>

#include "Terminal.h"

/// The options of the host's own command line. The words are those that follow the program's name.
class Options {
public:
    explicit Options(const std::vector<Text>& words);

    /// Returns why the words are invalid; empty if they are valid. The library's parser reports no
    /// errors: it would ignore a mistyped option.
    const Text& GetError() const { return m_error; }

    bool IsDefined(const Text& name) const { return m_options.at(name)->IsDefined(); }

    /// Returns the value of the option `name`; `defaultValue` if the option was not given.
    Text GetValue(const Text& name, const Text& defaultValue) const;

private:
    void Parse(const std::vector<Text>& words);
    Text FindError(const std::vector<Text>& words) const;

    std::map<Text, Toolkit::smart_ptr<Toolkit::CmdLineOption>> m_options;
    Text m_error;
};
