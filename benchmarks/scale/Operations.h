#pragma once

#include "toolkit/core/TString.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// Operations whose cost is measured at several sizes of their input.
namespace Scale {

/// One run. Its input is made before it, and its result lives until the next run.
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

/// The directory for all files, removed at the end.
const std::filesystem::path& Directory();

/// A path for the library.
TString<wchar_t> Wide(const std::filesystem::path& path);

/// Ends the program when a run has a wrong result.
void Require(bool condition);

/// Words of changing letters, in lower case.
template <typename Char>
std::basic_string<Char> Words(int length)
{
    std::basic_string<Char> text;
    text.reserve(static_cast<std::size_t>(length));
    for (unsigned int i = 0; text.size() < static_cast<std::size_t>(length); ++i)
        text.push_back(static_cast<Char>(i % 6 == 5 ? ' ' : 'a' + i * i / 7 % 26));
    return text;
}

} // namespace Scale
