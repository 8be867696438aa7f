#include <gtest/gtest.h>
#include <wx/debug.h>
#include <wx/string.h>

namespace {

// No input may trigger an assertion of wxWidgets.
void FailOnAssert(const wxString& file, int line, const wxString& function,
                  const wxString& condition, const wxString& message)
{
    ADD_FAILURE() << "wxWidgets assertion: " << file.utf8_str() << ":" << line << " "
                  << function.utf8_str() << ": " << condition.utf8_str() << " "
                  << message.utf8_str();
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    wxSetAssertHandler(FailOnAssert);
    return RUN_ALL_TESTS();
}
