#include "toolkit/datetime/DateTime.h"
#include "toolkit/system/Locales.h"

#include <cstddef>
#include <string>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

DateTime CreateDate()
{
    return DateTime(2009, 3, 5, 7, 4, 9);
}

void CheckCreated(Attempt& attempt, DateTime& date)
{
    attempt.Expect(date.IsValid(), date.GetYear() == 0);
    // The object accepts a date when memory is available again.
    date = CreateDate();
    attempt.ExpectAlways(date.GetYear() == 2009 && date == CreateDate());
}

void ConstructsFromNow(Attempt& attempt)
{
    Storage<DateTime> date;
    attempt.Run([&] { date.Create(); });
    CheckCreated(attempt, *date);
}

void ConstructsFromFields(Attempt& attempt)
{
    Storage<DateTime> date;
    attempt.Run([&] { date.Create(2009u, 3u, 5u, 7u, 4u, 9u); });
    CheckCreated(attempt, *date);
}

void ConstructsInZone(Attempt& attempt)
{
    Storage<DateTime> date;
    attempt.Run([&] { date.Create(2009u, 3u, 5u, 7u, 4u, 9u, 1); });
    CheckCreated(attempt, *date);
}

void Copies(Attempt& attempt)
{
    const DateTime other = CreateDate();
    Storage<DateTime> date;
    attempt.Run([&] { date.Create(other); });
    CheckCreated(attempt, *date);
}

void UsesDate(Attempt& attempt)
{
    const smart_ptr<DateTime> other(new DateTime(CreateDate()));
    Storage<DateTime> date;
    date.Create(CreateDate());
    DateTime copy = CreateDate();
    bool isRight = false;
    attempt.Run([&] {
        isRight = date->GetYear() == 2009 && date->GetMonth() == 3 && date->GetDay() == 5 &&
                  date->GetHour() == 7 && date->GetMinute() == 4 && date->GetSecond() == 9 &&
                  date->IsValid() && *date == copy && !(*date != copy) && !(*date < copy) &&
                  *date <= copy && !(*date > copy) && *date >= copy;
        date->Add(1, 1, 1);
        date->Add(1, 1, 1, 1);
        date->Remove(1, 1, 1, 1);
        date->MakeToUTC();
        date->MakeFromUTC();
        copy = *date;
        isRight = isRight && date->GetTotalHours(other) == 1 &&
                  date->GetTotalMinutes(other) == 61 && date->GetTotalSecondes(other) == 3661;
        date->Now();
        date.Destroy();
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && isRight);
}

void Parses(Attempt& attempt)
{
    static const TString<wchar_t> text = L"2009-03-05 07:04:09";
    DateTime date;
    bool isParsed = false;
    attempt.Run([&] { isParsed = date.ParseIsoString(text); });
    attempt.Expect(isParsed && date == CreateDate(), !isParsed && !date.IsValid());
}

void ParsesNarrow(Attempt& attempt)
{
    static const TString<char> text = "2009-03-05 07:04:09";
    DateTime date;
    bool isParsed = false;
    attempt.Run([&] { isParsed = date.ParseIsoString(text); });
    attempt.Expect(isParsed && date == CreateDate(), !isParsed && !date.IsValid());
    attempt.ExpectAlways(date.ParseIsoString(text));
}

template <typename Text, typename Get>
void Writes(Attempt& attempt, Get get)
{
    const DateTime date = CreateDate();
    Text expected;
    get(date, expected);
    Text text;
    text.push_back('x');
    attempt.Run([&] { get(date, text); });
    attempt.Expect(text == expected && !expected.empty(), text.empty());
}

#define WRITES(function, Char, ...)                                                                \
    {                                                                                              \
        "Toolkit::DateTime::" #function, [](Attempt& attempt) {                                    \
            Writes<TString<Char>>(attempt, [](const DateTime& date, TString<Char>& text) {         \
                date.function(text __VA_OPT__(, ) __VA_ARGS__);                                    \
            });                                                                                    \
        }                                                                                          \
    }

void PadsNumber(Attempt& attempt)
{
    const DateTime date;
    TString<wchar_t> text;
    attempt.Run([&] { text = date.IntToUString(-5, 40); });
    attempt.Expect(text.size() == 40, text.empty());
}

void GetsPattern(Attempt& attempt)
{
    TString<wchar_t> format = L"old";
    bool isFound = false;
    attempt.Run([&] { isFound = Locales::GetCurrentDateFormat(format); });
    attempt.Expect(isFound && format.size() > 1, !isFound && format.empty());
}

void GetsProviderVersion(Attempt& attempt)
{
    TString<wchar_t> version;
    attempt.Run([&] { version = Locales::GetProviderVersion(); });
    attempt.Expect(version.find(L"ICU ") == 0, version.empty());
}

void GetsSeparator(Attempt& attempt)
{
    TString<wchar_t> text;
    bool isOfLocale = true;
    attempt.Run([&] { isOfLocale = Locales::GetDecimalSeparator(text); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && !isOfLocale && text == L".");
}

} // namespace

std::vector<Operation> DateOperations()
{
    std::vector<Operation> operations = {
        {"Toolkit::DateTime::DateTime", ConstructsFromNow},
        {"Toolkit::DateTime::DateTime", ConstructsFromFields},
        {"Toolkit::DateTime::DateTime", ConstructsInZone},
        {"Toolkit::DateTime::DateTime", Copies},
        {"Toolkit::DateTime::ParseIsoString", Parses},
        {"Toolkit::DateTime::ParseIsoString", ParsesNarrow},
        WRITES(GetIsoDate, wchar_t, true),
        WRITES(GetIsoTime, wchar_t, true),
        WRITES(GetIsoString, wchar_t, true),
        WRITES(GetIsoString, char, true),
        WRITES(GetDate, wchar_t),
        WRITES(GetTime, wchar_t),
        WRITES(GetString, wchar_t),
        WRITES(GetRelativeStringFromNow, wchar_t),
        {"Toolkit::DateTime::IntToUString", PadsNumber},
        {"Toolkit::Locales::GetCurrentDateFormat", GetsPattern},
        {"Toolkit::Locales::GetDecimalSeparator", GetsSeparator},
        {"Toolkit::Locales::GetProviderVersion", GetsProviderVersion},
    };
    for (const char* const name : {"Now",
                                   "GetYear",
                                   "GetMonth",
                                   "GetDay",
                                   "GetHour",
                                   "GetMinute",
                                   "GetSecond",
                                   "IsValid",
                                   "MakeToUTC",
                                   "MakeFromUTC",
                                   "Add",
                                   "Add",
                                   "Remove",
                                   "GetTotalHours",
                                   "GetTotalMinutes",
                                   "GetTotalSecondes",
                                   "operator==",
                                   "operator!=",
                                   "operator<",
                                   "operator>",
                                   "operator<=",
                                   "operator>=",
                                   "operator=",
                                   "~DateTime"}) {
        // Never grows, because each operation keeps a pointer into it.
        static std::vector<std::string> names(64);
        static std::size_t used = 0;
        names[used] = std::string("Toolkit::DateTime::") + name;
        operations.push_back({names[used++].c_str(), UsesDate});
    }
    return operations;
}

} // namespace Toolkit::TestSupport
