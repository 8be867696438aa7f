#pragma once

#include <toolkit/core/TString.h>

using Text = TString<wchar_t>;

/// What the user sees. The screen gets UTF-8, whatever the locale, and each line at once; lines of
/// several threads do not mix.
namespace Terminal {

void Print(const Text& line);

/// Prints a row of a table of two columns.
void PrintRow(Text label, const Text& value);

/// Tells what went wrong, on the error output.
void Complain(const Text& message);

/// Complains and logs the same; returns what a program that failed ends with.
int Fail(const Text& message);

} // namespace Terminal
