#pragma once

#include <cstddef>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "memory/AllocationFault.h"

/// The out-of-memory sweep: runs each exported operation repeatedly. The first allocation fails in
/// the first run, the second in the second run, and so on, until a run ends before it reaches the
/// allocation that should fail.
namespace Toolkit::TestSupport {

/// What an operation may do when memory runs out.
enum class Rule {
    NoThrow,  ///< It throws nothing and reports failure by its result.
    BadAlloc, ///< It may throw std::bad_alloc, and in that case changes nothing.
    RegExp    ///< It may throw a `smart_ptr<RegExpException>`.
};

/// One pass of the sweep over an Operation, which may call Run() several times.
class Attempt {
public:
    /// In each Run(), makes the allocation of `origin` with this index fail, counted from 0; with
    /// Persistence::FromThenOn all later ones too.
    Attempt(Origin origin, Persistence persistence, long index)
        : m_origin(origin), m_persistence(persistence), m_index(index)
    {
    }

    /// Calls `action` with the chosen allocation failing. Returns false if `action` threw. An
    /// exception fails the test unless an allocation has failed in this or an earlier Run() and
    /// `rule` allows the exception.
    template <typename Action>
    bool Run(Rule rule, Action action)
    {
        std::exception_ptr thrown;
        {
            const AllocationFault fault(m_origin, m_persistence, m_index);
            try {
                action();
            } catch (...) {
                thrown = std::current_exception();
            }
            m_hasFailed = AllocationFault::HasFailed() || m_hasFailed;
        }
        return CheckException(rule, thrown);
    }

    /// Calls an action that must not throw.
    template <typename Action>
    void Run(Action action)
    {
        Run(Rule::NoThrow, std::move(action));
    }

    /// Whether an allocation has failed in any Run().
    bool HasAllocationFailed() const { return m_hasFailed; }

    /// Expects `isSuccess` if no allocation has failed, and `isSuccess` or `isDocumentedFailure` if
    /// one has.
    void Expect(bool isSuccess, bool isDocumentedFailure = false);

    /// Expects `condition` whether or not an allocation has failed.
    void ExpectAlways(bool condition) { Expect(condition, condition); }

    /// Number of failed expectations and of exceptions that were not allowed.
    int CountUnexpectedResults() const { return m_failures; }

private:
    bool CheckException(Rule rule, std::exception_ptr thrown);

    Origin m_origin;
    Persistence m_persistence;
    long m_index;
    bool m_hasFailed = false;
    int m_failures = 0;
};

/// Holds one object in place instead of on the heap, so that only the allocations of its
/// constructor can fail.
template <typename Object>
class Storage {
public:
    template <typename... Arguments>
    Object& Create(const Arguments&... arguments)
    {
        m_object = new (m_memory) Object(arguments...);
        return *m_object;
    }
    ~Storage()
    {
        if (m_object)
            m_object->~Object();
    }
    /// Destroys the object.
    void Destroy()
    {
        m_object->~Object();
        m_object = nullptr;
    }
    Object& operator*() const { return *m_object; }
    Object* operator->() const { return m_object; }

private:
    alignas(Object) unsigned char m_memory[sizeof(Object)];
    Object* m_object = nullptr;
};

/// An exported operation. `name` omits the arguments; each overload has its own entry.
struct Operation {
    const char* name;
    void (*run)(Attempt&);
    /// Maximum number of failing allocations that the normal test run tries; script/soak tries all.
    long maxSampledFailures = 1'000'000;
};

std::vector<Operation> CoreOperations();
std::vector<Operation> TextOperations();
std::vector<Operation> FileOperations();
std::vector<Operation> PatternOperations();
std::vector<Operation> DateOperations();
std::vector<Operation> ArchiveOperations();
std::vector<Operation> ThreadOperations();
std::vector<Operation> LogOperations();
std::vector<Operation> SystemOperations();
std::vector<Operation> MessageOperations();

/// Returns all of the above.
const std::vector<Operation>& Operations();

} // namespace Toolkit::TestSupport
