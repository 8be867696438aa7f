#pragma once

#include <cstddef>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "memory/AllocationFault.h"

/// The sweep: each public operation runs again and again, while its first, second, third ...
/// allocation fails, until it succeeds.
namespace Toolkit::TestSupport {

/// What an operation may do when memory runs out.
enum class Rule {
    Results,  ///< It throws nothing: the failure shows in its result.
    BadAlloc, ///< It may let std::bad_alloc out, with everything as it was.
    RegExp    ///< It may throw a `smart_ptr<RegExpException>`.
};

/// One run of an operation.
class Attempt {
public:
    Attempt(Origin origin, Persistence persistence, long index)
        : m_origin(origin), m_persistence(persistence), m_index(index)
    {
    }

    /// Calls `operation` with the fault. Returns false when it threw what `rule` allows.
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
            m_hasFailed = AllocationFault::HasFailed();
        }
        return Judge(rule, thrown);
    }

    /// The same for an operation that throws nothing.
    template <typename Operation>
    void Run(Operation operation)
    {
        Run(Rule::Results, std::move(operation));
    }

    /// Whether an allocation failed in Run().
    bool HasFailed() const { return m_hasFailed; }

    /// `success` has to hold when no allocation failed, and either of the two when one did.
    void Expect(bool success, bool failure = false);

    /// What must hold in every case.
    void Always(bool condition) { Expect(condition, condition); }

    /// Number of expectations that did not hold.
    int Failures() const { return m_failures; }

private:
    bool Judge(Rule rule, std::exception_ptr thrown);

    Origin m_origin;
    Persistence m_persistence;
    long m_index;
    bool m_hasFailed = false;
    int m_failures = 0;
};

/// An object in memory of its own, so that only its construction meets the fault.
template <typename Object>
class Place {
public:
    template <typename... Arguments>
    Object& Make(const Arguments&... arguments)
    {
        m_object = new (m_memory) Object(arguments...);
        return *m_object;
    }
    ~Place()
    {
        if (m_object)
            m_object->~Object();
    }
    /// Destroys the object.
    void End()
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

/// An exported operation, by its name without arguments. Overloads have an entry each.
struct Operation {
    const char* name;
    void (*run)(Attempt&);
    /// How many single failures a run in the normal suite tries; the whole sweep tries all.
    long sample = 1'000'000;
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

/// All of them.
const std::vector<Operation>& Operations();

} // namespace Toolkit::TestSupport
