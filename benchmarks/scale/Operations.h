#pragma once

#include "toolkit/core/TString.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// Operations whose cost is measured at several sizes of their input.
namespace Scale {

/// One run of an operation. Its input exists before it starts; its result lives until the next run.
using Run = std::function<void()>;

struct Operation {
    std::string name;
    std::vector<int> sizes;
    std::function<Run(int size)> prepare;
};

using Operations = std::vector<Operation>;

const std::vector<int> c_lengths{1'000, 10'000, 100'000, 1'000'000};
const std::vector<int> c_files{100, 1'000, 10'000, 100'000};
const std::vector<int> c_clients{10, 50, 100, 200};

void AddTextOperations(Operations& operations);
void AddEncodingOperations(Operations& operations);
void AddPatternOperations(Operations& operations);
void AddSettingsOperations(Operations& operations);
void AddFileOperations(Operations& operations);
void AddArchiveOperations(Operations& operations);
void AddThreadOperations(Operations& operations);
void AddMessageOperations(Operations& operations);

/// Returns the directory for all files, which is removed at the end of the program.
const std::filesystem::path& GetDirectory();

/// Converts a path for the library.
TString<wchar_t> ToWide(const std::filesystem::path& path);

/// Ends the program if `condition` is false: a run has a wrong result.
void Require(bool condition);

/// Returns words of varying lower-case letters.
template <typename Char>
std::basic_string<Char> MakeWords(int length)
{
    std::basic_string<Char> text;
    text.reserve(static_cast<std::size_t>(length));
    for (unsigned int i = 0; text.size() < static_cast<std::size_t>(length); ++i)
        text.push_back(static_cast<Char>(i % 6 == 5 ? ' ' : 'a' + i * i / 7 % 26));
    return text;
}

} // namespace Scale
