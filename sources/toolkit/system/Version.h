#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

namespace Toolkit {

/// A version number with four parts. The process-wide object has the version of this library.
class TOOLKIT_API Version {
public:
    /// The version 0.0.0.0.
    Version();
    Version(unsigned int major, unsigned int minor, unsigned int build, unsigned int revision);
    /// Parses up to four numbers separated by dots. A missing part, or one that does not begin with
    /// a number, is 0: "2" gives 2.0.0.0, and "a.2b" gives 0.2.0.0. Empty parts are skipped: "1..2"
    /// gives 1.2.0.0.
    Version(const TString<wchar_t>& text);

    unsigned int GetMajor() const { return m_major; }
    unsigned int GetMinor() const { return m_minor; }
    unsigned int GetBuild() const { return m_build; }
    unsigned int GetRevision() const { return m_revision; }

    /// Returns all four numbers separated by dots; empty when out of memory.
    TString<wchar_t> ToString() const;

    bool operator==(const Version& other) const;
    bool operator<(const Version& other) const;
    bool operator>(const Version& other) const;

    /// Return -1, 0 or 1 if this version is older than, equal to or newer than the other one.
    int CompareVersion(const Version& other) const;
    int CompareVersion(const TString<wchar_t>& text) const;

    /// Returns a new object with the version of this library, which the caller deletes; null when
    /// out of memory.
    static Version* Create();

    /// Creates the process-wide object. Does nothing if it exists or when out of memory. Takes no
    /// lock: create and release the object while no other thread calls these three functions.
    static void CreateInstance();
    /// Returns a copy of the pointer to the process-wide object; empty if there is none.
    static smart_ptr<Version> GetInstance();
    /// Releases the process-wide object. Copies of its pointer keep it alive.
    static void ReleaseInstance();

    /// Null while there is no process-wide object.
    static smart_ptr<Version>* s_pInstance;

private:
    unsigned int m_major;
    unsigned int m_minor;
    unsigned int m_build;
    unsigned int m_revision;
};

} // namespace Toolkit
