#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/smart_ptr.h"

#include <memory>

namespace Toolkit {

class CheckerFile;
namespace Base {
class InstanceLock;
}

/// Tells whether this application, installed in this place and run by this user, runs already.
///
/// The lock is held as long as the object lives, by two files in the user's home directory: a lock
/// of the system's, which decides, and the file of the framework's `wxSingleInstanceChecker`, so
/// that programs which use that see this one and are seen. Of several processes that start at once
/// exactly one finds itself the first, and a process that crashed leaves nothing behind that would
/// keep others out. There has to be a `PathManager`.
class TOOLKIT_API SingleApplicationInstance {
public:
    /// Takes the lock unless another process holds it.
    SingleApplicationInstance();
    ~SingleApplicationInstance();

    /// Whether another process held the lock at construction; false too when no lock file can be
    /// made.
    bool IsAlreadyRunning() const;

    /// Creates the process-wide object unless there is one.
    static void CreateInstance();
    /// A copy of the pointer to the process-wide object; empty when there is none.
    static smart_ptr<SingleApplicationInstance> GetInstance();
    /// Lets the process-wide object go; it lives on while copies of its pointer do.
    static void ReleaseInstance();

    /// Null while there is no process-wide object.
    static smart_ptr<SingleApplicationInstance>* s_pInstance;

private:
    std::unique_ptr<CheckerFile> m_checkerFile; // null when another process holds the lock
    std::unique_ptr<Base::InstanceLock> m_lock;
};

} // namespace Toolkit
