#pragma once

#include "toolkit/core/TString.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// Operations whose cost is measured at several sizes of their input.
namespace Scale {

/// Runs an operation once, on input that has been prepared before.
using Run = std::function<void()>;

struct Operation {
    std::string name; // "(cache)" and "(n log n)" change its limit: see script/bench-scale
    std::vector<int> sizes;
    std::function<Run(int size)> prepare;
};

using Operations = std::vector<Operation>;

/// Counts of small items: characters, lines, keys, listeners.
const std::vector<int> c_sizes{1'000, 10'000, 100'000, 1'000'000};
const std::vector<int> c_fileCounts{100, 1'000, 10'000, 100'000};
const std::vector<int> c_clientCounts{10, 50, 100, 200};

void AddTextOperations(Operations& operations);
void AddEncodingOperations(Operations& operations);
void AddPatternOperations(Operations& operations);
void AddSettingsOperations(Operations& operations);
void AddFileOperations(Operations& operations);
void AddArchiveOperations(Operations& operations);
void AddThreadOperations(Operations& operations);
void AddMessageOperations(Operations& operations);

/// Returns the directory for the operations' files, which is removed at the end of the program.
const std::filesystem::path& GetDirectory();

/// Converts a path to the string type of the library.
TString<wchar_t> ToWide(const std::filesystem::path& path);

/// Ends the program with an error message if `condition`, the check of a result, is false.
void Require(bool condition);

/// Returns `length` characters: words of five lower-case letters, separated by spaces.
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
