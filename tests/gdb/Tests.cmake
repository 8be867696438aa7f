# The pretty-printers for gdb. A sanitizer's process is no place for a debugger.
if(TOOLKIT_SANITIZE)
    return()
endif()

toolkit_test(gdb/PrintersTest.cpp)
target_compile_definitions(
    PrintersTest
    PRIVATE TOOLKIT_PRINTERS="${PROJECT_SOURCE_DIR}/gdb/toolkit_printers.py"
            TOOLKIT_LIBRARY_IS_DESCRIBED=$<CONFIG:Debug,RelWithDebInfo>
)
toolkit_test_program(PrintersTest TOOLKIT_PRINTERS_PROGRAM gdb/PrintersProgram.cpp)
# Variables are described and stay where they are.
target_compile_options(PrintersProgram PRIVATE -O0 -g)
