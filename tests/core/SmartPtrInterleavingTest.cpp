#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

// smart_ptr counts its references with atomic additions. This model of its atomic steps tries every
// order in which two threads can take them.

enum class Step { Add, Subtract, Read, Write, MarkReleased, Release, Free };

using Program = std::vector<Step>;

struct Block {
    int count = 2; // each thread starts with one pointer
    int releases = 0;
    bool isFreed = false;
    bool wasUsedAfterFree = false;
};

struct Thread {
    Program rest; // the next step is the last element
    int read = 0;
};

const Program c_copy = {Step::Add};
const Program c_drop = {Step::Subtract};
// A broken drop that reads and writes the count in two steps. The test must detect it.
const Program c_splitDrop = {Step::Read, Step::Write};

constexpr int c_released = -1000;

// Inserts `steps` before the thread's remaining ones.
void Push(Thread& thread, const Program& steps)
{
    thread.rest.insert(thread.rest.end(), steps.rbegin(), steps.rend());
}

class Model {
public:
    // `release` contains the steps taken when the count drops to 0, `destructor` those that the
    // object's destructor takes.
    Model(Program release, Program destructor)
        : m_release(std::move(release)), m_destructor(std::move(destructor))
    {
    }

    // Returns the number of orders that do not release the object exactly once, never free the
    // block, or use the block after freeing it.
    int CountFaults(const Program& first, const Program& second)
    {
        std::array<Thread, 2> threads;
        Push(threads[0], first);
        Push(threads[1], second);
        m_orders = 0;
        m_faults = 0;
        Explore(Block(), threads);
        return m_faults;
    }

    int Orders() const { return m_orders; }

private:
    void Explore(const Block& block, const std::array<Thread, 2>& threads)
    {
        bool isAtEnd = true;
        for (std::size_t i = 0; i < threads.size(); ++i) {
            if (threads[i].rest.empty())
                continue;
            isAtEnd = false;
            Block nextBlock = block;
            std::array<Thread, 2> nextThreads = threads;
            TakeStep(nextBlock, nextThreads[i]);
            Explore(nextBlock, nextThreads);
        }
        if (!isAtEnd)
            return;
        ++m_orders;
        if (block.releases != 1 || !block.isFreed || block.wasUsedAfterFree)
            ++m_faults;
    }

    void TakeStep(Block& block, Thread& thread)
    {
        const Step step = thread.rest.back();
        thread.rest.pop_back();
        block.wasUsedAfterFree |= block.isFreed;
        switch (step) {
        case Step::Add:
            ++block.count;
            break;
        case Step::Subtract:
            Drop(block, thread, block.count - 1);
            break;
        case Step::Read:
            thread.read = block.count;
            break;
        case Step::Write:
            Drop(block, thread, thread.read - 1);
            break;
        case Step::MarkReleased:
            block.count = c_released;
            break;
        case Step::Release:
            if (++block.releases == 1)
                Push(thread, m_destructor);
            break;
        case Step::Free:
            block.isFreed = true;
            break;
        }
    }

    void Drop(Block& block, Thread& thread, int count)
    {
        block.count = count;
        // Stops faulty models from releasing the object again and again.
        if (count == 0 && block.releases < 3)
            Push(thread, m_release);
    }

    Program m_release;
    Program m_destructor;
    int m_orders = 0;
    int m_faults = 0;
};

Program operator+(Program left, const Program& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

const Program c_lastDrop = {Step::MarkReleased, Step::Release, Step::Free};
const Program c_lastDropWithoutMark = {Step::Release, Step::Free};

TEST(SmartPtrInterleavingTest, ReleasesOnceInEveryOrderOfCopiesAndDrops)
{
    Model model(c_lastDrop, {});
    const std::array<Program, 3> programs = {c_drop, c_copy + c_drop + c_drop,
                                             c_copy + c_copy + c_drop + c_drop + c_drop};

    for (const Program& first : programs) {
        for (const Program& second : programs) {
            SCOPED_TRACE(std::to_string(first.size()) + " and " + std::to_string(second.size()));
            EXPECT_EQ(model.CountFaults(first, second), 0);
            EXPECT_GT(model.Orders(), 1);
        }
    }
}

TEST(SmartPtrInterleavingTest, ReleasesOnceWhenTheDestructorCopiesAndDrops)
{
    Model model(c_lastDrop, c_copy + c_copy + c_drop + c_drop);

    EXPECT_EQ(model.CountFaults(c_copy + c_drop + c_drop, c_copy + c_drop + c_drop), 0);
}

TEST(SmartPtrInterleavingTest, FindsAReleaseThatDoesNotMarkTheBlock)
{
    Model model(c_lastDropWithoutMark, c_copy + c_drop);

    EXPECT_GT(model.CountFaults(c_drop, c_drop), 0);
}

TEST(SmartPtrInterleavingTest, FindsADropSplitIntoTwoSteps)
{
    Model model(c_lastDrop, {});

    EXPECT_GT(model.CountFaults(c_splitDrop, c_splitDrop), 0);
}

} // namespace
} // namespace Toolkit
