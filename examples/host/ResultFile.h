#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <toolkit/threading/Mutex.h>

#include "Terminal.h"

/// A file that readers see when it is complete, or not at all: it is written under a name of its
/// own in the same directory and then renamed. What had its name before stays until then.
///
/// Other users may be able to write to the directory. A file of this user is replaced and keeps its
/// permissions; a link, a pipe, a device or another user's file is refused.
class ResultFile {
public:
    explicit ResultFile(const Text& path);
    ~ResultFile();

    ResultFile(const ResultFile&) = delete;
    ResultFile& operator=(const ResultFile&) = delete;

    /// Each is false when the file cannot be written; GetFault() says why then.
    bool Open();
    bool Write(const char* bytes, std::size_t count);
    bool Commit();

    const Text& GetFault() const { return m_fault; }

    /// Removes what was written unless Commit() was true. The destructor calls it, too. Any thread
    /// may call it while another one writes, whose Commit() is false then.
    void Discard();

    unsigned long long GetSize() const { return m_size; }

private:
    bool FindFault();
    bool Create();
    bool Fail(const Text& fault);
    bool FailWithErrno();

    const std::string m_path;
    Toolkit::Mutex m_lock;
    std::string m_writtenPath; // guarded by m_lock; empty while nothing is written
    std::FILE* m_file = nullptr;
    struct stat m_replaced = {}; // of the file that has the name; st_nlink is 0 when there is none
    Text m_fault;
    unsigned long long m_size = 0;
};
