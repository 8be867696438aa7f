#include "support/ScopedLocale.h"

#include <gtest/gtest.h>

#include <clocale>

namespace Toolkit::TestSupport {

ScopedLocale::ScopedLocale(const std::string& name) : m_oldName(std::setlocale(LC_ALL, nullptr))
{
    EXPECT_NE(std::setlocale(LC_ALL, name.c_str()), nullptr) << "the system has no locale " << name;
}

ScopedLocale::~ScopedLocale()
{
    std::setlocale(LC_ALL, m_oldName.c_str());
}

} // namespace Toolkit::TestSupport
