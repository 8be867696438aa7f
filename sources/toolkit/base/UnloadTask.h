#pragma once

namespace Toolkit::Base {

/// What an object still has to do when the library is unloaded and nobody has destroyed it, as when
/// a process ends in exit() while another thread holds it.
class UnloadTask {
public:
    using Function = void (*)(void* object);

    /// `function` will be called with `object`, unless this task is destroyed before.
    UnloadTask(Function function, void* object);
    ~UnloadTask();

    UnloadTask(const UnloadTask&) = delete;
    UnloadTask& operator=(const UnloadTask&) = delete;

    /// Calls the functions of all tasks. A task that is destroyed meanwhile, on another thread,
    /// waits until that is done.
    static void RunAll();

private:
    const Function m_function;
    void* const m_object;
    UnloadTask* m_previous; // of all tasks
    UnloadTask* m_next;
};

} // namespace Toolkit::Base
