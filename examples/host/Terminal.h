#pragma once

#include <toolkit/core/TString.h>

using Text = TString<wchar_t>;

// Output for the user. It is UTF-8 in every locale and flushed after each line. Lines from
// different threads do not mix. Characters that a terminal would act on are escaped.

void Print(const Text& line);

/// Prints a row of a two-column table.
void PrintRow(Text label, const Text& value);

/// Shows that `done` of `total` units are done; a `total` of 0 means that the total is unknown. On
/// a terminal that can rewrite a line, the next call or line replaces what this one shows;
/// elsewhere, each call prints a line.
void ShowProgress(const Text& title, unsigned long long done, unsigned long long total,
                  const Text& unit);

/// Like Print(), on standard error.
void PrintError(const Text& line);

/// Prints an error or a warning to standard error, after the program's name.
void Complain(const Text& message);

/// Prints and logs an error; returns EXIT_FAILURE.
int Fail(const Text& message);
