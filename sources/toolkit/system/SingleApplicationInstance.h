#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

#include <memory>

namespace Toolkit {

class CheckerFile;
namespace Base {
class InstanceLock;
}

/// Reports whether this application, installed in this directory and run by this user, is already
/// running.
///
/// The object holds the lock for its lifetime, with two files in the user's home directory. A
/// flock(2) on the first one decides. The second has the unique name of the application. It is the
/// lock file of `wxSingleInstanceChecker`: this class and programs that use the checker detect each
/// other. A file of that name with another owner, mode or content is left alone. Of several
/// processes that start at once exactly one is the first, and a crashed process never keeps others
/// out. In a read-only home directory an existing lock file is enough. A forked child does not hold
/// the lock.
///
/// Needs the process-wide `PathManager`.
class TOOLKIT_API SingleApplicationInstance {
public:
    /// Takes the lock unless another process holds it. When out of memory, takes no lock, as if no
    /// lock file could be created.
    SingleApplicationInstance();
    ~SingleApplicationInstance();

    /// Returns whether another process held the lock at construction; false if no lock file could
    /// be created.
    bool IsAlreadyRunning() const;

    /// Returns the path of the file that the application with the name `uniqueName` locks; empty
    /// when out of memory.
    static TString<wchar_t> GetLockPath(const TString<wchar_t>& uniqueName);

    /// Creates the process-wide object. Does nothing when it exists or when out of memory.
    static void CreateInstance();
    /// Returns a copy of the pointer to the process-wide object; empty when there is none.
    static smart_ptr<SingleApplicationInstance> GetInstance();
    /// Releases the process-wide object, which lives on as long as copies of its pointer do.
    static void ReleaseInstance();

    /// Null while there is no process-wide object.
    static smart_ptr<SingleApplicationInstance>* s_pInstance;

private:
    void TakeLock();

    std::unique_ptr<CheckerFile> m_checkerFile; // null when another process holds the lock
    std::unique_ptr<Base::InstanceLock> m_lock;
};

} // namespace Toolkit
