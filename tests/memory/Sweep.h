#pragma once

#include <cstddef>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "memory/AllocationFault.h"

/// The out-of-memory sweep: runs each public operation repeatedly. The first run makes the first
/// allocation fail, the second run the second one, and so on until a run makes too few allocations
/// to fail.
namespace Toolkit::TestSupport {

/// What an operation may do when memory runs out.
enum class Rule {
    NoThrow,  ///< It throws nothing and reports failure by its result.
    BadAlloc, ///< It may throw std::bad_alloc, and in that case changes nothing.
    RegExp    ///< It may throw a `smart_ptr<RegExpException>`.
};

/// One run of an operation.
class Attempt {
public:
    /// In each Run(), makes the allocation of `origin` with this index fail.
    Attempt(Origin origin, Persistence persistence, long index)
        : m_origin(origin), m_persistence(persistence), m_index(index)
    {
    }

    /// Calls `operation` with the chosen allocation failing. Returns false if it threw. An
    /// exception fails the test unless an allocation failed and `rule` allows the exception.
    template <typename Operation>
    bool Run(Rule rule, Operation operation)
    {
        std::exception_ptr thrown;
        {
            const AllocationFault fault(m_origin, m_persistence, m_index);
            try {
                operation();
            } catch (...) {
                thrown = std::current_exception();
            }
            m_hasFailed = AllocationFault::HasFailed() || m_hasFailed;
        }
        return CheckException(rule, thrown);
    }

    /// Runs an operation that must not throw.
    template <typename Operation>
    void Run(Operation operation)
    {
        Run(Rule::NoThrow, std::move(operation));
    }

    /// Whether an allocation has failed in any Run().
    bool HasFailed() const { return m_hasFailed; }

    /// Expects `success` if no allocation failed, and `success` or `failure` if one did.
    void Expect(bool success, bool failure = false);

    /// Expects `condition` whether or not an allocation failed.
    void ExpectAlways(bool condition) { Expect(condition, condition); }

    /// Number of failed expectations and of exceptions that were not allowed.
    int Failures() const { return m_failures; }

private:
    bool CheckException(Rule rule, std::exception_ptr thrown);

    Origin m_origin;
    Persistence m_persistence;
    long m_index;
    bool m_hasFailed = false;
    int m_failures = 0;
};

/// Storage for one object, so that creating the object allocates only what its constructor
/// allocates.
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
