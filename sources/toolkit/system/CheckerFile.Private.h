#pragma once

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OwnDescriptor.h"
#include "toolkit/core/TString.h"

#include <string>

namespace Toolkit {

/// A lock file like that of `wxSingleInstanceChecker`, in the user's home directory. It lets this
/// process and programs that use the checker itself detect each other.
///
/// The checker itself would wait in fsync(2), which takes longer than everything else at the start
/// of a program. It would also mistake an unrelated process that has the id of a crashed one for
/// the holder of the file.
class CheckerFile {
public:
    /// Creates the file `name` unless another process has locked it. Creates nothing if `name` is
    /// empty, if the system refuses, or if a file of that name exists that is not a lock file of
    /// this user or contains the id of this process. Throws `std::bad_alloc`.
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
    Base::OwnDescriptor m_ownFile; // a forked child does not own the file
    bool m_isHeldElsewhere = false;
};

} // namespace Toolkit
