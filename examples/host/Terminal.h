#pragma once

#include <toolkit/core/TString.h>

using Text = TString<wchar_t>;

// What the user sees. The screen gets UTF-8, whatever the locale, and each line at once; lines of
// several threads do not mix. Characters that a terminal would act on are made visible.

void Print(const Text& line);

/// Prints a row of a table of two columns.
void PrintRow(Text label, const Text& value);

/// Shows that `done` of `total` units are done; a total of 0 is unknown. On a terminal it is a bar
/// that the next call or line replaces, otherwise a line.
void ShowProgress(const Text& title, unsigned long long done, unsigned long long total,
                  const Text& unit);

/// Like Print(), on the error output.
void PrintError(const Text& line);

/// Reports what went wrong, on the error output, with the program's name.
void Complain(const Text& message);

/// Prints and logs an error; returns the exit code of a failed program.
int Fail(const Text& message);
