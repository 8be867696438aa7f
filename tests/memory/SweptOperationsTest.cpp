// Checks that the sweep includes every exported operation. Add a new operation to the sweep, or to
// PrivateOperations.txt if it is private.
#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

// Returns the name of a function without its arguments and without the template arguments of
// TString. Empty for data, lambdas and other templates.
std::string ExtractName(const std::string& symbol)
{
    if (symbol.starts_with("typeinfo") || symbol.starts_with("vtable") ||
        symbol.starts_with("non-virtual") || symbol.starts_with("guard") ||
        symbol.starts_with("VTT") || symbol.find("<lambda") != std::string::npos ||
        symbol.find("{lambda") != std::string::npos)
        return {};
    const std::size_t arguments = symbol.find('(');
    if (arguments == std::string::npos)
        return {};
    std::string name = symbol.substr(0, arguments);
    if (name.starts_with("TString<"))
        name.erase(7, name.find('>') - 6);
    return name.find('<') == std::string::npos || name.find("operator") != std::string::npos
               ? name
               : std::string();
}

// Returns the private functions that are tested through the public operations that call them.
const std::set<std::string>& GetPrivateNames()
{
    static const std::set<std::string> names = [] {
        std::ifstream file(PRIVATE_OPERATIONS);
        std::set<std::string> read;
        for (std::string line; std::getline(file, line);)
            read.insert(line);
        return read;
    }();
    return names;
}

std::map<std::string, int> ReadExportedNames()
{
    std::ifstream file(EXPORTED_SYMBOLS);
    std::map<std::string, int> names;
    for (std::string line; std::getline(file, line);) {
        const std::string name = ExtractName(line);
        if (!name.empty() && GetPrivateNames().count(name) == 0)
            ++names[name];
    }
    return names;
}

TEST(SweptOperationsTest, IncludesEveryExportedOperation)
{
    std::map<std::string, int> swept;
    for (const Operation& operation : Operations())
        ++swept[operation.name];

    const std::map<std::string, int> exported = ReadExportedNames();
    ASSERT_GT(exported.size(), 250u);
    for (const auto& [name, overloads] : exported)
        EXPECT_GE(swept[name], overloads) << name;
}

TEST(SweptOperationsTest, ListsOnlyExportedOperationsAsPrivate)
{
    std::set<std::string> names;
    std::ifstream file(EXPORTED_SYMBOLS);
    for (std::string line; std::getline(file, line);)
        names.insert(ExtractName(line));

    for (const std::string& name : GetPrivateNames())
        EXPECT_EQ(names.count(name), 1u) << name;
}

} // namespace
} // namespace Toolkit::TestSupport
