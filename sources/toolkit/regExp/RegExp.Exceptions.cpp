#include "toolkit/regExp/RegExp.Exceptions.h"

#include "toolkit/core/smart_ptr.h"
#include "toolkit/encoding/UTF8.h"

namespace Toolkit {
namespace {

constexpr const char* c_file = "sources/toolkit/regExp/RegExp.Exceptions.h";
constexpr char c_line = 7;

} // namespace

RegExpException::RegExpException() = default;

RegExpException::~RegExpException() = default;

void RegExpException::Throw(const TString<wchar_t>& message)
{
    const smart_ptr<RegExpException> exception(new RegExpException());
    exception->message = UTF8::ToUTF8(message);
    exception->file = c_file;
    exception->line = c_line;
    exception->function = "Throw";
    throw smart_ptr<RegExpException>(exception);
}

} // namespace Toolkit
