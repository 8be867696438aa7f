#pragma once

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OwnDescriptor.h"
#include "toolkit/core/TString.h"

#include <string>

namespace Toolkit {

/// The lock file that the framework's instance checker leaves in the user's home directory. With it
/// programs that use the checker itself see this process and are seen by it.
///
/// The checker would wait until the disk has the file, which takes longer than all the rest of a
/// start, and would take a stranger with the process id of a crashed process for that one.
class CheckerFile {
public:
    /// Makes the file called `name` unless another process has it; without a name, or where there
    /// is no place for it, there is none.
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
