# The pretty-printers for gdb. They are not tested under a sanitizer.
if(TOOLKIT_SANITIZE)
    return()
endif()

toolkit_test(gdb/PrintersTest.cpp)
target_compile_definitions(
    PrintersTest
    PRIVATE TOOLKIT_PRINTERS="${PROJECT_SOURCE_DIR}/gdb/toolkit_printers.py"
            TOOLKIT_LIBRARY_HAS_DEBUG_INFO=$<CONFIG:Debug,RelWithDebInfo>
)
toolkit_test_program(PrintersTest TOOLKIT_TEST_PRINTERS_PROGRAM gdb/PrintersProgram.cpp)
# gdb finds variables only with debug information, and reliably only without optimization.
target_compile_options(PrintersProgram PRIVATE -O0 -g)
