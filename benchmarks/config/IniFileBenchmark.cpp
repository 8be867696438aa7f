#include "toolkit/config/IniFile.h"

#include <benchmark/benchmark.h>
#include <wx/fileconf.h>
#include <wx/init.h>

#include <Poco/Util/IniFileConfiguration.h>
#include <QSettings>
#include <QStringList>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <glib.h>
#include <malloc.h>
#include <memory>
#include <optional>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

namespace fs = std::filesystem;

struct Shape {
    int sections;
    int keysPerSection;
};

constexpr int c_smallKeyCount = 40;
constexpr int c_largeKeyCount = 200'000; // a file of 8 MB

Shape GetShape(std::int64_t keyCount)
{
    return keyCount == c_smallKeyCount ? Shape{4, 10} : Shape{2000, 100};
}

std::string FormatNumber(const char* format, int number)
{
    char text[32];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

std::string MakeSectionName(int section)
{
    return FormatNumber("Section%04d", section);
}

std::string MakeKeyName(int key)
{
    return FormatNumber("setting%03d", key);
}

std::string MakeValue(int section, int key)
{
    return FormatNumber("value %04d", section) + FormatNumber(" of setting %03d", key);
}

// The INI file of a benchmark; the destructor removes it.
class SettingsFile {
public:
    explicit SettingsFile(const Shape& shape)
    {
        std::string name = (fs::temp_directory_path() / "settings-XXXXXX").native();
        if (!::mkdtemp(name.data()))
            throw std::runtime_error("no temporary directory");
        m_directory = name;
        std::ofstream file(m_directory / "settings.ini");
        for (int section = 0; section < shape.sections; ++section) {
            file << '[' << MakeSectionName(section) << "]\n";
            for (int key = 0; key < shape.keysPerSection; ++key)
                file << MakeKeyName(key) << " = " << MakeValue(section, key) << '\n';
        }
    }
    ~SettingsFile() { fs::remove_all(m_directory); }

    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;

    std::string Path() const { return m_directory / "settings.ini"; }

private:
    fs::path m_directory;
};

// Each class below wraps one library: it loads a file, builds the library's name for a key, and
// looks up the value.

class ToolkitSettings {
public:
    using Name = std::pair<TString<wchar_t>, TString<wchar_t>>;

    explicit ToolkitSettings(const std::string& path) : m_settings(Widen(path)) {}

    static Name MakeName(const std::string& section, const std::string& key)
    {
        return {Widen(section), Widen(key)};
    }
    const TString<wchar_t>& Find(const Name& name) const
    {
        return m_settings.GetValue(name.first, name.second, m_empty);
    }
    std::string FindBytes(const Name& name) const
    {
        const TString<wchar_t>& value = Find(name);
        return {value.begin(), value.end()};
    }

private:
    static TString<wchar_t> Widen(const std::string& text)
    {
        return std::wstring(text.begin(), text.end());
    }

    IniFile m_settings;
    TString<wchar_t> m_empty;
};

class QtSettings {
public:
    using Name = QString;

    explicit QtSettings(const std::string& path)
        : m_path(path),
          m_settings(std::in_place, QString::fromStdString(path), QSettings::IniFormat)
    {
        // QSettings parses the sections only when keys are listed.
        benchmark::DoNotOptimize(m_settings->childKeys());
    }
    // QSettings caches a loaded file until the file changes. Loading an empty file under the same
    // name clears the cache.
    ~QtSettings()
    {
        m_settings.reset();
        fs::rename(m_path, m_path + ".kept");
        std::ofstream(m_path).close();
        QSettings(QString::fromStdString(m_path), QSettings::IniFormat).childKeys();
        fs::rename(m_path + ".kept", m_path);
    }

    QtSettings(const QtSettings&) = delete;
    QtSettings& operator=(const QtSettings&) = delete;

    static Name MakeName(const std::string& section, const std::string& key)
    {
        return QString::fromStdString(section + "/" + key);
    }
    QVariant Find(const Name& name) const { return m_settings->value(name); }
    std::string FindBytes(const Name& name) const { return Find(name).toString().toStdString(); }

private:
    std::string m_path;
    std::optional<QSettings> m_settings;
};

class PocoSettings {
public:
    using Name = std::string;

    explicit PocoSettings(const std::string& path)
        : m_settings(new Poco::Util::IniFileConfiguration(path))
    {
    }

    static Name MakeName(const std::string& section, const std::string& key)
    {
        return section + "." + key;
    }
    std::string Find(const Name& name) const { return m_settings->getString(name, ""); }
    std::string FindBytes(const Name& name) const { return Find(name); }

private:
    Poco::AutoPtr<Poco::Util::IniFileConfiguration> m_settings;
};

class WxSettings {
public:
    using Name = wxString;

    explicit WxSettings(const std::string& path)
        : m_settings(wxString(), wxString(), wxString(path), wxString(), wxCONFIG_USE_LOCAL_FILE)
    {
    }

    static Name MakeName(const std::string& section, const std::string& key)
    {
        return wxString("/" + section + "/" + key);
    }
    wxString Find(const Name& name) const { return m_settings.Read(name, wxString()); }
    std::string FindBytes(const Name& name) const { return Find(name).utf8_string(); }

private:
    wxFileConfig m_settings;
};

class GlibSettings {
public:
    using Name = std::pair<std::string, std::string>;
    using Text = std::unique_ptr<char, decltype(&g_free)>;

    explicit GlibSettings(const std::string& path) : m_settings(g_key_file_new(), &g_key_file_free)
    {
        g_key_file_load_from_file(m_settings.get(), path.c_str(), G_KEY_FILE_NONE, nullptr);
    }

    static Name MakeName(const std::string& section, const std::string& key)
    {
        return {section, key};
    }
    Text Find(const Name& name) const
    {
        return {g_key_file_get_value(m_settings.get(), name.first.c_str(), name.second.c_str(),
                                     nullptr),
                &g_free};
    }
    std::string FindBytes(const Name& name) const
    {
        const Text text = Find(name);
        return text ? text.get() : "";
    }

private:
    std::unique_ptr<GKeyFile, decltype(&g_key_file_free)> m_settings;
};

template <typename Settings>
bool HasLastValue(const Settings& settings, const Shape& shape)
{
    const int section = shape.sections - 1;
    const int key = shape.keysPerSection - 1;
    return settings.FindBytes(Settings::MakeName(MakeSectionName(section), MakeKeyName(key))) ==
           MakeValue(section, key);
}

// Measures only the loading, not the destructors: QtSettings clears a cache there.
template <typename Settings>
void MeasureLoad(benchmark::State& state)
{
    const wxInitializer wxWidgets;
    const Shape shape = GetShape(state.range(0));
    const SettingsFile file(shape);
    for (auto _ : state) {
        auto settings = std::make_unique<Settings>(file.Path());
        state.PauseTiming();
        if (!HasLastValue(*settings, shape))
            state.SkipWithError("wrong value");
        settings.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Settings>
void MeasureLookup(benchmark::State& state)
{
    const wxInitializer wxWidgets;
    const Shape shape = GetShape(state.range(0));
    const SettingsFile file(shape);
    const Settings settings(file.Path());
    std::vector<typename Settings::Name> names;
    for (int section = 0; section < shape.sections; ++section) {
        for (int key = 0; key < shape.keysPerSection; ++key)
            names.push_back(Settings::MakeName(MakeSectionName(section), MakeKeyName(key)));
    }
    if (!HasLastValue(settings, shape))
        state.SkipWithError("wrong value");

    for (auto _ : state) {
        for (const auto& name : names) {
            const auto& value = settings.Find(name);
            benchmark::DoNotOptimize(&value);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

std::size_t CountAllocatedBytes()
{
    const struct mallinfo2 heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// Measures the memory that the settings occupy after `use`.
template <typename Settings, typename Use>
void MeasureMemory(benchmark::State& state, Use use)
{
    const SettingsFile file(GetShape(state.range(0)));
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::size_t before = CountAllocatedBytes();
        const Settings settings(file.Path());
        use(settings);
        bytes = CountAllocatedBytes() - before;
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}

void BM_IniLoad_Toolkit(benchmark::State& state)
{
    MeasureLoad<ToolkitSettings>(state);
}

void BM_IniLoad_QSettings(benchmark::State& state)
{
    MeasureLoad<QtSettings>(state);
}

void BM_IniLoad_Poco(benchmark::State& state)
{
    MeasureLoad<PocoSettings>(state);
}

void BM_IniLoad_wxFileConfig(benchmark::State& state)
{
    MeasureLoad<WxSettings>(state);
}

void BM_IniLoad_GKeyFile(benchmark::State& state)
{
    MeasureLoad<GlibSettings>(state);
}

void BM_IniLookup_Toolkit(benchmark::State& state)
{
    MeasureLookup<ToolkitSettings>(state);
}

void BM_IniLookup_QSettings(benchmark::State& state)
{
    MeasureLookup<QtSettings>(state);
}

void BM_IniLookup_Poco(benchmark::State& state)
{
    MeasureLookup<PocoSettings>(state);
}

void BM_IniLookup_wxFileConfig(benchmark::State& state)
{
    MeasureLookup<WxSettings>(state);
}

void BM_IniLookup_GKeyFile(benchmark::State& state)
{
    MeasureLookup<GlibSettings>(state);
}

void BM_IniMemory_Toolkit(benchmark::State& state)
{
    MeasureMemory<ToolkitSettings>(state, [](const ToolkitSettings&) {});
}

void BM_IniMemory_GKeyFile(benchmark::State& state)
{
    MeasureMemory<GlibSettings>(state, [](const GlibSettings&) {});
}

// Measures the memory after one value of each section has been read.
void BM_IniReadMemory_Toolkit(benchmark::State& state)
{
    const Shape shape = GetShape(state.range(0));
    MeasureMemory<ToolkitSettings>(state, [&shape](const ToolkitSettings& settings) {
        for (int section = 0; section < shape.sections; ++section)
            settings.Find(ToolkitSettings::MakeName(MakeSectionName(section), MakeKeyName(0)));
    });
}

BENCHMARK(BM_IniLoad_Toolkit)->Arg(c_smallKeyCount)->Arg(c_largeKeyCount);
BENCHMARK(BM_IniLoad_QSettings)->Arg(c_smallKeyCount)->Arg(c_largeKeyCount);
BENCHMARK(BM_IniLoad_Poco)->Arg(c_smallKeyCount)->Arg(c_largeKeyCount);
BENCHMARK(BM_IniLoad_wxFileConfig)->Arg(c_smallKeyCount)->Arg(c_largeKeyCount);
BENCHMARK(BM_IniLoad_GKeyFile)->Arg(c_smallKeyCount)->Arg(c_largeKeyCount);
BENCHMARK(BM_IniLookup_Toolkit)->Arg(c_smallKeyCount)->Arg(c_largeKeyCount);
BENCHMARK(BM_IniLookup_QSettings)->Arg(c_smallKeyCount)->Arg(c_largeKeyCount);
BENCHMARK(BM_IniLookup_Poco)->Arg(c_smallKeyCount)->Arg(c_largeKeyCount);
BENCHMARK(BM_IniLookup_wxFileConfig)->Arg(c_smallKeyCount)->Arg(c_largeKeyCount);
BENCHMARK(BM_IniLookup_GKeyFile)->Arg(c_smallKeyCount)->Arg(c_largeKeyCount);
BENCHMARK(BM_IniMemory_Toolkit)->Arg(c_largeKeyCount)->Iterations(1);
BENCHMARK(BM_IniMemory_GKeyFile)->Arg(c_largeKeyCount)->Iterations(1);
BENCHMARK(BM_IniReadMemory_Toolkit)->Arg(c_largeKeyCount)->Iterations(1);

} // namespace
} // namespace Toolkit
