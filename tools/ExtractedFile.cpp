#include "ExtractedFile.h"

#include <fcntl.h>

#include "Failure.h"

namespace Tool {
namespace {

constexpr mode_t c_permissions = 0666; // before the umask is applied

} // namespace

ExtractedFile::ExtractedFile(Descriptor directory, const std::string& name)
    : m_directory(std::move(directory)), m_name(name),
      m_temporaryName(".toolkit-" + std::to_string(::getpid()) + ".part"),
      m_file(::openat(m_directory.Get(), m_temporaryName.c_str(),
                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, c_permissions))
{
    if (!m_file.IsOpen())
        throw MakeSystemFailure("cannot create " + name);
}

ExtractedFile::~ExtractedFile()
{
    ::unlinkat(m_directory.Get(), m_temporaryName.c_str(), 0);
}

void ExtractedFile::Write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_file.Get(), bytes.data(), bytes.size());
        if (count >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            throw MakeSystemFailure("cannot write " + m_name);
    }
}

// Uses linkat(), because renameat() would replace an existing file.
void ExtractedFile::Commit()
{
    if (::linkat(m_directory.Get(), m_temporaryName.c_str(), m_directory.Get(), m_name.c_str(),
                 0) != 0)
        throw MakeSystemFailure("cannot create " + m_name);
}

} // namespace Tool
