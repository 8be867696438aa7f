#pragma once

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OwnDescriptor.h"
#include "toolkit/core/TString.h"

#include <string>

namespace Toolkit {

/// The lock file that `wxSingleInstanceChecker` leaves in the user's home directory. Programs that
/// use the checker itself see this process by it and are seen.
///
/// The checker itself would wait for the disk, which takes longer than the rest of a start, and
/// would mistake an unrelated process with the id of a crashed one for it.
class CheckerFile {
public:
    /// Makes the file called `name` unless another process has it. There is none without a name,
    /// where it cannot be made, and where a file of that name is no lock file of this user.
    explicit CheckerFile(const TString<wchar_t>& name);
    ~CheckerFile();

    CheckerFile(const CheckerFile&) = delete;
    CheckerFile& operator=(const CheckerFile&) = delete;

    /// Whether another process had the file at construction.
    bool IsHeldElsewhere() const { return m_isHeldElsewhere; }

private:
    bool Create();
    bool RemoveStale();

    std::string m_path;
    Base::FileDescriptor m_file;   // open when the file is this object's
    Base::OwnDescriptor m_ownFile; // which it is not in a forked child
    bool m_isHeldElsewhere = false;
};

} // namespace Toolkit
