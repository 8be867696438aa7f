#pragma once

namespace Toolkit::Base {

/// Work for an object that still exists when the library is unloaded, for instance because another
/// thread holds it while the process calls exit().
class UnloadTask {
public:
    using Function = void (*)(void* object);

    /// RunAll() calls `function` with `object`, unless this task is destroyed before.
    UnloadTask(Function function, void* object);
    ~UnloadTask();

    UnloadTask(const UnloadTask&) = delete;
    UnloadTask& operator=(const UnloadTask&) = delete;

    /// Calls the functions of all tasks. Meanwhile the destructor of a task waits if another thread
    /// calls it.
    static void RunAll();

private:
    const Function m_function;
    void* const m_object;
    UnloadTask* m_previous; // of all tasks
    UnloadTask* m_next;
};

} // namespace Toolkit::Base
