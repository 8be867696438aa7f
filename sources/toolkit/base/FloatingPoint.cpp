#include "toolkit/base/FloatingPoint.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <limits>
#include <locale.h>
#include <memory>
#include <string>
#include <type_traits>
#if __has_include(<xlocale.h>)
#include <xlocale.h>
#endif

namespace Toolkit::Base {
namespace {

struct LocaleDeleter {
    void operator()(locale_t locale) const { ::freelocale(locale); }
};

using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, LocaleDeleter>;

} // namespace

bool ParseFloatingPointByStrtod(const char* begin, const char* end, double& value)
{
    const std::string text(begin, end);
    const Locale classic(::newlocale(LC_ALL_MASK, "C", nullptr));
    char* stop = nullptr;
    const double parsed = ::strtod_l(text.c_str(), &stop, classic.get());
    if (text.empty() || stop != text.data() + text.size())
        return false;
    value = std::min(parsed, std::numeric_limits<double>::max());
    return true;
}

} // namespace Toolkit::Base
