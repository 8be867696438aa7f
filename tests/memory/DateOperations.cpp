#include "toolkit/datetime/DateTime.h"
#include "toolkit/system/Locales.h"

#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

DateTime SomeDate()
{
    return DateTime(2009, 3, 5, 7, 4, 9);
}

void CheckMade(Attempt& attempt, DateTime& date)
{
    attempt.Expect(date.IsValid(), date.GetYear() == 0);
    // The object accepts a date when memory is available again.
    date = SomeDate();
    attempt.Always(date.GetYear() == 2009 && date == SomeDate());
}

void MadeNow(Attempt& attempt)
{
    Place<DateTime> date;
    attempt.Run([&] { date.Make(); });
    CheckMade(attempt, *date);
}

void MadeOfFields(Attempt& attempt)
{
    Place<DateTime> date;
    attempt.Run([&] { date.Make(2009u, 3u, 5u, 7u, 4u, 9u); });
    CheckMade(attempt, *date);
}

void MadeInZone(Attempt& attempt)
{
    Place<DateTime> date;
    attempt.Run([&] { date.Make(2009u, 3u, 5u, 7u, 4u, 9u, 1); });
    CheckMade(attempt, *date);
}

void Copied(Attempt& attempt)
{
    const DateTime other = SomeDate();
    Place<DateTime> date;
    attempt.Run([&] { date.Make(other); });
    CheckMade(attempt, *date);
}

void Used(Attempt& attempt)
{
    const smart_ptr<DateTime> other(new DateTime(SomeDate()));
    Place<DateTime> date;
    date.Make(SomeDate());
    DateTime copy = SomeDate();
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
        date.End();
    });
    attempt.Always(!attempt.HasFailed() && isRight);
}

void Parsed(Attempt& attempt)
{
    static const TString<wchar_t> text = L"2009-03-05 07:04:09";
    DateTime date;
    bool isParsed = false;
    attempt.Run([&] { isParsed = date.ParseIsoString(text); });
    attempt.Expect(isParsed && date == SomeDate(), !isParsed && !date.IsValid());
}

void ParsedNarrow(Attempt& attempt)
{
    static const TString<char> text = "2009-03-05 07:04:09";
    DateTime date;
    bool isParsed = false;
    attempt.Run([&] { isParsed = date.ParseIsoString(text); });
    attempt.Expect(isParsed && date == SomeDate(), !isParsed && !date.IsValid());
    attempt.Always(date.ParseIsoString(text));
}

template <typename Text, typename Get>
void Written(Attempt& attempt, Get get)
{
    const DateTime date = SomeDate();
    Text expected;
    get(date, expected);
    Text text;
    text.push_back('x');
    attempt.Run([&] { get(date, text); });
    attempt.Expect(text == expected && !expected.empty(), text.empty());
}

#define WRITTEN(function, Char, ...)                                                               \
    {                                                                                              \
        "Toolkit::DateTime::" #function, [](Attempt& attempt) {                                    \
            Written<TString<Char>>(attempt, [](const DateTime& date, TString<Char>& text) {        \
                date.function(text __VA_OPT__(, ) __VA_ARGS__);                                    \
            });                                                                                    \
        }                                                                                          \
    }

void Padded(Attempt& attempt)
{
    const DateTime date;
    TString<wchar_t> text;
    attempt.Run([&] { text = date.IntToUString(-5, 40); });
    attempt.Expect(text.size() == 40, text.empty());
}

void Pattern(Attempt& attempt)
{
    TString<wchar_t> format = L"old";
    bool isThere = false;
    attempt.Run([&] { isThere = Locales::GetCurrentDateFormat(format); });
    attempt.Expect(isThere && format.size() > 1, !isThere && format.empty());
}

void Provider(Attempt& attempt)
{
    TString<wchar_t> version;
    attempt.Run([&] { version = Locales::GetProviderVersion(); });
    attempt.Expect(version.find(L"ICU ") == 0, version.empty());
}

void Separator(Attempt& attempt)
{
    TString<wchar_t> text;
    bool isOfLocale = true;
    attempt.Run([&] { isOfLocale = Locales::GetDecimalSeparator(text); });
    attempt.Always(!attempt.HasFailed() && !isOfLocale && text == L".");
}

} // namespace

std::vector<Operation> DateOperations()
{
    std::vector<Operation> operations = {
        {"Toolkit::DateTime::DateTime", MadeNow},
        {"Toolkit::DateTime::DateTime", MadeOfFields},
        {"Toolkit::DateTime::DateTime", MadeInZone},
        {"Toolkit::DateTime::DateTime", Copied},
        {"Toolkit::DateTime::ParseIsoString", Parsed},
        {"Toolkit::DateTime::ParseIsoString", ParsedNarrow},
        WRITTEN(GetIsoDate, wchar_t, true),
        WRITTEN(GetIsoTime, wchar_t, true),
        WRITTEN(GetIsoString, wchar_t, true),
        WRITTEN(GetIsoString, char, true),
        WRITTEN(GetDate, wchar_t),
        WRITTEN(GetTime, wchar_t),
        WRITTEN(GetString, wchar_t),
        WRITTEN(GetRelativeStringFromNow, wchar_t),
        {"Toolkit::DateTime::IntToUString", Padded},
        {"Toolkit::Locales::GetCurrentDateFormat", Pattern},
        {"Toolkit::Locales::GetDecimalSeparator", Separator},
        {"Toolkit::Locales::GetProviderVersion", Provider},
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
        static std::vector<std::string> names(64);
        static std::size_t used = 0;
        names[used] = std::string("Toolkit::DateTime::") + name;
        operations.push_back({names[used++].c_str(), Used});
    }
    return operations;
}

} // namespace Toolkit::TestSupport
