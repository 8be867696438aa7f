#include "support/TempDir.h"

#include "toolkit/encoding/UTF8.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>
#include <system_error>

namespace Toolkit::TestSupport {

TempDir::TempDir()
{
    std::string name = (std::filesystem::temp_directory_path() / "toolkit-test-XXXXXX").native();
    if (!::mkdtemp(name.data()))
        throw std::runtime_error("cannot create a temporary directory");
    m_path = name;
}

TempDir::~TempDir()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

TString<wchar_t> TempDir::File(const TString<wchar_t>& name) const
{
    const TString<wchar_t> directory = UTF8::ToUNICODE(m_path.native());
    return name.empty() ? directory : TString<wchar_t>(directory + L"/" + name);
}

TString<wchar_t> TempDir::WriteFile(const TString<wchar_t>& name, const std::string& bytes) const
{
    std::ofstream file(std::string(UTF8::ToUTF8(File(name))), std::ios::binary);
    file << bytes;
    EXPECT_TRUE(file.flush());
    return File(name);
}

std::string TempDir::ReadFile(const TString<wchar_t>& name) const
{
    return ReadWholeFile(std::string(UTF8::ToUTF8(File(name))));
}

std::string ReadWholeFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace Toolkit::TestSupport
