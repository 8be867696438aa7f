// Measures whole processes, each of which starts and stops a library. The programs take turns, so
// that noise affects all of them equally. Their order is random, because a program starts faster
// after one with the same libraries, which are then in the processor's caches. Each benchmark
// reports the median of one program.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

enum Program { Toolkit, Wx, WxNet, Qt, ProgramCount };

constexpr const char* c_paths[ProgramCount] = {START_TOOLKIT, START_WX, START_WX_NET, START_QT};
constexpr int c_rounds = 201;

// The loader finds the peers' libraries in its cache, where it would also find an installed
// Toolkit. It would search two dozen directories for the one in the build tree, so LD_PRELOAD names
// the file.
void SetPreloaded(const char* library)
{
    if (*library)
        ::setenv("LD_PRELOAD", library, 1);
    else
        ::unsetenv("LD_PRELOAD");
}

// Runs the program and returns how long that takes, in seconds; negative if it fails.
double RunProgram(Program program)
{
    const char* const path = c_paths[program];
    SetPreloaded(program == Toolkit ? START_TOOLKIT_LIBRARY : "");
    std::string name = path;
    char* arguments[] = {name.data(), nullptr};
    pid_t process = 0;
    int status = 0;
    const auto start = std::chrono::steady_clock::now();
    if (::posix_spawn(&process, path, nullptr, nullptr, arguments, environ) != 0 ||
        ::waitpid(process, &status, 0) != process || status != 0)
        return -1;
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double ComputeMedian(std::vector<double>& times)
{
    std::sort(times.begin(), times.end());
    return times.front() < 0 ? times.front() : times[times.size() / 2];
}

std::array<double, ProgramCount> MeasureAll()
{
    std::string home = (std::filesystem::temp_directory_path() / "toolkit-start-XXXXXX").native();
    if (!::mkdtemp(home.data()) || ::setenv("HOME", home.c_str(), 1) != 0)
        return {-1, -1, -1, -1};
    std::array<std::vector<double>, ProgramCount> times;
    std::array<Program, ProgramCount> order{Toolkit, Wx, WxNet, Qt};
    std::mt19937 random;
    for (int round = 0; round < c_rounds; ++round) {
        std::shuffle(order.begin(), order.end(), random);
        for (const Program program : order)
            times[program].push_back(RunProgram(program));
    }
    std::filesystem::remove_all(home);

    std::array<double, ProgramCount> medians{};
    std::transform(times.begin(), times.end(), medians.begin(), ComputeMedian);
    return medians;
}

// Reports the median of a program plus `allowance`, in seconds.
void Report(benchmark::State& state, Program program, double allowance = 0)
{
    static const std::array<double, ProgramCount> medians = MeasureAll();
    if (medians[program] < 0) {
        state.SkipWithError("the program failed");
        return;
    }
    for (auto _ : state)
        state.SetIterationTime(medians[program] + allowance);
}

void BM_ProcessStart_Toolkit(benchmark::State& state)
{
    Report(state, Toolkit);
}
BENCHMARK(BM_ProcessStart_Toolkit)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_ProcessStart_wx(benchmark::State& state)
{
    Report(state, Wx);
}
BENCHMARK(BM_ProcessStart_wx)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

// The goal for the library's start: at most 2 ms longer than wxWidgets alone.
void BM_ProcessStart_wxPlus2ms(benchmark::State& state)
{
    Report(state, Wx, 0.002);
}
BENCHMARK(BM_ProcessStart_wxPlus2ms)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

// Loads all wxWidgets libraries that Toolkit needs; the time that BM_ProcessStart_Toolkit takes
// beyond this one is Toolkit's own cost. If the network library needs libcurl, loading libcurl and
// its dependencies takes most of the time.
void BM_ProcessStart_wxNet(benchmark::State& state)
{
    Report(state, WxNet);
}
BENCHMARK(BM_ProcessStart_wxNet)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_ProcessStart_Qt(benchmark::State& state)
{
    Report(state, Qt);
}
BENCHMARK(BM_ProcessStart_Qt)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
