#include <gtest/gtest.h>
#include <wx/debug.h>
#include <wx/string.h>

namespace {

// No input may get as far as one of the framework's assertions.
void FailOnAssert(const wxString& file, int line, const wxString& function,
                  const wxString& condition, const wxString& message)
{
    ADD_FAILURE() << "assertion of the framework: " << file.utf8_str() << ":" << line << " "
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
