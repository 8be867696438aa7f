#pragma once

#include <toolkit/core/TString.h>

using Text = TString<wchar_t>;

// Output for the user. It is UTF-8 whatever the locale, and flushed after each line; lines of
// several threads do not mix. Characters that a terminal would act on are escaped.

void Print(const Text& line);

/// Prints a row of a two-column table.
void PrintRow(Text label, const Text& value);

/// Shows that `done` of `total` units are done; a `total` of 0 means that it is unknown. On a
/// terminal the display is a bar that the next call or line replaces, otherwise a line.
void ShowProgress(const Text& title, unsigned long long done, unsigned long long total,
                  const Text& unit);

/// Like Print(), on standard error.
void PrintError(const Text& line);

/// Prints an error or a warning to standard error, after the program's name.
void Complain(const Text& message);

/// Prints and logs an error; returns the exit code of a failed program.
int Fail(const Text& message);
