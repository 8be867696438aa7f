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
/// The object holds a lock for its lifetime, with two files in the user's home directory:
/// - GetLockPath() names the file whose flock(2) lock decides. The file is never removed; in a
///   read-only home directory, an existing one is enough.
/// - A lock file like that of `wxSingleInstanceChecker` has the application's unique name, so that
///   this class and programs that use the checker detect each other. A file of that name with
///   another owner, mode or content is left alone.
///
/// If several processes start at the same time, IsAlreadyRunning() is false in exactly one of them.
/// A crashed process never keeps others out, and a forked child does not hold the lock.
///
/// Needs the process-wide `PathManager`: without it, no lock is taken.
class TOOLKIT_API SingleApplicationInstance {
public:
    /// Takes the lock unless another process holds it. When out of memory, locks only one of the
    /// two files or neither, as if they could not be created.
    SingleApplicationInstance();
    ~SingleApplicationInstance();

    /// Returns whether another process held the lock at construction; false if no lock file could
    /// be created.
    bool IsAlreadyRunning() const;

    /// Returns the path of the file that the application with the unique name `uniqueName` locks;
    /// empty when out of memory.
    static TString<wchar_t> GetLockPath(const TString<wchar_t>& uniqueName);

    /// Creates the process-wide object. Does nothing if it exists or when out of memory. Takes no
    /// lock: create and release the object while no other thread calls these three functions.
    static void CreateInstance();
    /// Returns a copy of the pointer to the process-wide object; empty if there is none.
    static smart_ptr<SingleApplicationInstance> GetInstance();
    /// Releases the process-wide object. Copies of its pointer keep it alive.
    static void ReleaseInstance();

    /// Null while there is no process-wide object.
    static smart_ptr<SingleApplicationInstance>* s_pInstance;

private:
    void TakeLock();

    std::unique_ptr<CheckerFile> m_checkerFile; // null if another process holds the lock
    std::unique_ptr<Base::InstanceLock> m_lock;
};

} // namespace Toolkit
