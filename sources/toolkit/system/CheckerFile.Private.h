#pragma once

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OwnDescriptor.h"
#include "toolkit/core/TString.h"

#include <string>

namespace Toolkit {

/// A lock file like that of `wxSingleInstanceChecker`, in the user's home directory. It lets this
/// process and programs that use the checker itself detect each other.
///
/// The checker itself is not used because it calls fsync(2), which takes longer than the rest of a
/// program's start. After a crash it also treats any process that reuses the old process id as the
/// holder of the file.
class CheckerFile {
public:
    /// Creates the file `name`. Creates nothing if `name` is empty or the system refuses. Replaces
    /// an existing file only if it is a lock file of this user that no process has locked and that
    /// does not contain the id of this process. Throws `std::bad_alloc`.
    explicit CheckerFile(const TString<wchar_t>& name);
    ~CheckerFile();

    CheckerFile(const CheckerFile&) = delete;
    CheckerFile& operator=(const CheckerFile&) = delete;

    /// Whether another process had locked the file at construction.
    bool IsHeldElsewhere() const { return m_isHeldElsewhere; }

private:
    bool Create();
    bool RemoveStale();

    std::string m_path;
    Base::FileDescriptor m_file;   // open if this object created the file
    Base::OwnDescriptor m_ownFile; // keeps a forked child from using the file
    bool m_isHeldElsewhere = false;
};

} // namespace Toolkit
