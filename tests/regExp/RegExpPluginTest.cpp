#include <gtest/gtest.h>

#include <dlfcn.h>
#include <sstream>
#include <string>
#include <vector>

// This program does not link the library; only its plug-ins do. Each plug-in has its own symbols
// and RTTI.
namespace {

using Thrower = void (*)();

class Plugin {
public:
    explicit Plugin(const std::string& path) : m_handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
    {
    }
    ~Plugin()
    {
        if (m_handle)
            dlclose(m_handle);
    }

    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    bool IsLoaded() const { return m_handle != nullptr; }

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

// Runs `check` for each pair of plug-ins, one that throws and one that catches. A plug-in is also
// paired with itself.
template <typename Check>
void ForEachPair(const Check& check)
{
    ASSERT_FALSE(PluginPaths().empty());
    for (const std::string& throwingPath : PluginPaths()) {
        for (const std::string& catchingPath : PluginPaths()) {
            SCOPED_TRACE(throwingPath + " to " + catchingPath);
            const Plugin throwing(throwingPath);
            ASSERT_TRUE(throwing.IsLoaded()) << dlerror();
            const Plugin catching(catchingPath);
            ASSERT_TRUE(catching.IsLoaded()) << dlerror();
            check(throwing, catching);
        }
    }
}

TEST(RegExpPluginTest, CatchesAnExceptionThrownByTheLibrary)
{
    ForEachPair([](const Plugin& throwing, const Plugin& catching) {
        EXPECT_TRUE(catching.Catches(throwing.GetThrower("ThrowFromLibrary")));
    });
}

TEST(RegExpPluginTest, CatchesAnExceptionThrownByAPlugin)
{
    ForEachPair([](const Plugin& throwing, const Plugin& catching) {
        EXPECT_TRUE(catching.Catches(throwing.GetThrower("ThrowFromPlugin")));
    });
}

} // namespace
