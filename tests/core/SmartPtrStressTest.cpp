#include "toolkit/core/smart_ptr.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <latch>
#include <new>
#include <random>
#include <thread>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

// Counts live objects, detects a second destruction, and copies its own pointer in its destructor.
class Probe {
public:
    static smart_ptr<Probe> Create()
    {
        smart_ptr<Probe> pointer(new Probe());
        // A pointer to the object itself that holds no reference.
        pointer->m_self = new (pointer->m_storage) smart_ptr<Probe>(pointer);
        pointer->m_self->ReleaseRef();
        return pointer;
    }

    ~Probe()
    {
        {
            const smart_ptr<Probe> copy(*m_self);
            smart_ptr<Probe> another;
            another = copy;
        }
        s_faults += m_isAlive.exchange(false) ? 0 : 1;
        --s_alive;
    }

    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    static std::atomic<int> s_alive;
    static std::atomic<int> s_faults;

private:
    Probe() { ++s_alive; }

    alignas(smart_ptr<Probe>) std::byte m_storage[sizeof(smart_ptr<Probe>)];
    smart_ptr<Probe>* m_self = nullptr;
    std::atomic<bool> m_isAlive{true};
};

std::atomic<int> Probe::s_alive{0};
std::atomic<int> Probe::s_faults{0};

using Pointers = std::array<smart_ptr<Probe>, 4>;

// Performs one step of a thread on its own pointers. Only reads `shared`.
void TakeStep(std::mt19937::result_type step, Pointers& mine, const Pointers& shared,
              std::mt19937& random)
{
    const std::size_t to = random() % mine.size();
    const std::size_t from = random() % mine.size();
    switch (step % 6) {
    case 0:
        mine[to] = shared[from];
        break;
    case 1:
        mine[to] = mine[from];
        break;
    case 2:
        mine[to] = Probe::Create();
        break;
    case 3:
        mine[to] = nullptr;
        break;
    case 4:
        std::swap(mine[to], mine[from]);
        break;
    default:
        const smart_ptr<Probe> copy(shared[from]);
        mine[to] = copy;
        break;
    }
}

void TakeSteps(Pointers shared, std::latch& start, unsigned int seed)
{
    constexpr int steps = 20'000;
    std::mt19937 random(seed);
    Pointers mine;
    start.arrive_and_wait();
    for (int i = 0; i < steps; ++i)
        TakeStep(random(), mine, shared, random);
}

TEST(SmartPtrStressTest, ReleasesEachObjectOnceWhateverTwoThreadsDo)
{
    for (unsigned int round = 0; round < 10; ++round) {
        std::latch start(2);
        Pointers shared;
        for (smart_ptr<Probe>& pointer : shared)
            pointer = Probe::Create();
        std::thread first(TakeSteps, shared, std::ref(start), 2 * round);
        std::thread second(TakeSteps, std::exchange(shared, Pointers()), std::ref(start),
                           2 * round + 1);
        first.join();
        second.join();
    }

    EXPECT_EQ(Probe::s_alive, 0);
    EXPECT_EQ(Probe::s_faults, 0);
}

// Two threads drop the last two pointers at the same time: the later drop releases the object.
TEST(SmartPtrStressTest, ReleasesOnceWhenTheLastTwoDropsRace)
{
    constexpr int rounds = 2'000;
    std::vector<std::pair<smart_ptr<Probe>, smart_ptr<Probe>>> pairs(rounds);
    for (auto& [left, right] : pairs) {
        left = Probe::Create();
        right = left;
    }
    std::latch start(2);

    std::thread other([&] {
        start.arrive_and_wait();
        for (auto& pair : pairs)
            pair.first = smart_ptr<Probe>();
    });
    start.arrive_and_wait();
    for (auto& pair : pairs)
        pair.second = smart_ptr<Probe>();
    other.join();

    EXPECT_EQ(Probe::s_alive, 0);
    EXPECT_EQ(Probe::s_faults, 0);
}

} // namespace
} // namespace Toolkit
