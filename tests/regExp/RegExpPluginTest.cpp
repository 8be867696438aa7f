#include <gtest/gtest.h>

#include <cstdlib>
#include <dlfcn.h>
#include <sstream>
#include <string>
#include <vector>

// This program does not link the library. Only its plug-ins do, each of which has its own symbols
// and type information.
namespace {

using Thrower = void (*)();

class Plugin {
public:
    explicit Plugin(const std::string& path) : m_handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
    {
        EXPECT_NE(m_handle, nullptr) << dlerror();
    }
    ~Plugin()
    {
        if (m_handle)
            dlclose(m_handle);
    }

    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    Thrower GetThrower(const char* name) const
    {
        return reinterpret_cast<Thrower>(dlsym(m_handle, name));
    }

    bool Catches(Thrower thrower) const
    {
        return reinterpret_cast<bool (*)(Thrower)>(dlsym(m_handle, "Catches"))(thrower);
    }

private:
    void* m_handle;
};

// Returns the paths of the plug-ins, one for each compiler that the build has found.
std::vector<std::string> PluginPaths()
{
    std::istringstream list(TOOLKIT_PLUGINS);
    std::vector<std::string> paths;
    for (std::string path; std::getline(list, path, ':');)
        paths.push_back(path);
    return paths;
}

// Runs `check` for each pair of plug-ins, one that throws and one that catches.
template <typename Check>
void ForEachPair(const Check& check)
{
    ASSERT_FALSE(PluginPaths().empty());
    for (const std::string& throwing : PluginPaths()) {
        for (const std::string& catching : PluginPaths()) {
            SCOPED_TRACE(throwing + " to " + catching);
            check(Plugin(throwing), Plugin(catching));
        }
    }
}

TEST(RegExpPluginTest, CatchesAnExceptionThrownByTheLibrary)
{
    ForEachPair([](const Plugin& throwing, const Plugin& catching) {
        EXPECT_TRUE(catching.Catches(throwing.GetThrower("ThrowFromLibrary")));
    });
}

TEST(RegExpPluginTest, CatchesAnExceptionThrownByAnotherPlugin)
{
    ForEachPair([](const Plugin& throwing, const Plugin& catching) {
        EXPECT_TRUE(catching.Catches(throwing.GetThrower("ThrowFromPlugin")));
    });
}

} // namespace
