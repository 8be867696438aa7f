#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <toolkit/threading/Mutex.h>

#include "Terminal.h"

/// A file that appears only when it is complete: it is written under a temporary name in the same
/// directory and then renamed. An older file at the path stays until then.
///
/// The directory may be one that other users can write to, such as /tmp. A file of this user is
/// replaced by one with the same permissions; a link, a pipe, a device or another user's file is
/// refused.
class ResultFile {
public:
    explicit ResultFile(const Text& path);
    ~ResultFile();

    ResultFile(const ResultFile&) = delete;
    ResultFile& operator=(const ResultFile&) = delete;

    /// Open, write and complete the file; call them in this order. Each returns false on failure,
    /// and GetError() then returns the reason.
    bool Open();
    bool Write(const char* bytes, std::size_t count);
    bool Commit();

    const Text& GetError() const { return m_error; }

    /// Removes the temporary file unless Commit() has succeeded. The destructor calls it, too. Any
    /// thread may call it while another one is writing; the writer's Commit() then returns false.
    void Discard();

    /// The number of bytes passed to Write().
    unsigned long long GetSize() const { return m_size; }

private:
    bool ExamineOldFile();
    bool Create();
    bool Fail(const Text& error);
    bool FailWithErrno();

    const std::string m_path;
    Toolkit::Mutex m_lock;
    std::string m_temporaryPath; // guarded by m_lock; empty while there is no temporary file
    std::FILE* m_file = nullptr;
    struct stat m_replaced = {}; // of the file to be replaced; st_nlink is 0 if there is none
    Text m_error;
    unsigned long long m_size = 0;
};
