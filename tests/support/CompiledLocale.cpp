#include "support/CompiledLocale.h"

#include <cstdlib>

namespace Toolkit::TestSupport {

CompiledLocale::CompiledLocale(const std::string& source, const std::string& charset)
    : m_searchPath("LOCPATH", m_directory.Path().native()), m_name(source + "." + charset)
{
    const std::string command = "localedef --no-archive -i " + source + " -f " + charset + " '" +
                                (m_directory.Path() / m_name).native() + "' >/dev/null 2>&1";
    m_isAvailable = std::system(command.c_str()) == 0;
}

} // namespace Toolkit::TestSupport
