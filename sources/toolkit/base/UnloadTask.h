#pragma once

namespace Toolkit::Base {

/// A function to call if an object still exists when the library is unloaded, for instance because
/// another thread is using the object when the process calls exit().
class UnloadTask {
public:
    using Function = void (*)(void* object);

    /// RunAll() calls `function` with `object`, unless this task is destroyed first.
    UnloadTask(Function function, void* object);
    ~UnloadTask();

    UnloadTask(const UnloadTask&) = delete;
    UnloadTask& operator=(const UnloadTask&) = delete;

    /// Calls the functions of all tasks, which must not create or destroy tasks. Until all
    /// functions have returned, a thread that destroys a task waits.
    static void RunAll();

private:
    const Function m_function;
    void* const m_object;
    // Neighbours in the list of all tasks.
    UnloadTask* m_previous;
    UnloadTask* m_next;
};

} // namespace Toolkit::Base
