#include "toolkit/regExp/RegExp.Exceptions.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"

namespace Toolkit {
namespace {

// Every exception reports this place.
constexpr const char* c_file = "sources/toolkit/regExp/RegExp.Exceptions.h";
constexpr char c_line = 7;

} // namespace

RegExpException::RegExpException() = default;

RegExpException::~RegExpException() = default;

smart_ptr<RegExpException> RegExpException::Create(const TString<wchar_t>& message)
{
    smart_ptr<RegExpException> exception(new RegExpException());
    exception->message = Base::EncodeUtf8(message);
    exception->file = c_file;
    exception->line = c_line;
    exception->function = "Throw";
    return exception;
}

void RegExpException::Throw(const TString<wchar_t>& message)
{
    throw smart_ptr<RegExpException>(Base::TryOr(s_outOfMemory, [&] { return Create(message); }));
}

void RegExpException::ThrowOutOfMemory()
{
    throw smart_ptr<RegExpException>(s_outOfMemory);
}

} // namespace Toolkit
