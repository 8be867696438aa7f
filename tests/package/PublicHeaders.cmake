# Compiles every public header on its own, as C++17 and as C++20, with warnings as errors.

# Headers that include wxWidgets, directly or through another header. All others compile without its
# include path.
set(framework_headers
    toolkit/Toolkit.h
    toolkit/archive/ArchiveZip.h
    toolkit/archive/ArchiveZipEntry.h
    toolkit/logging/FileLogger.h
    toolkit/logging/WxLogForwarder.h
    toolkit/threading/Thread.h
)

get_target_property(public_headers Toolkit HEADER_SET)
list(TRANSFORM public_headers REPLACE "^${PROJECT_SOURCE_DIR}/sources/" "")
list(REMOVE_ITEM public_headers ${framework_headers})

# Adds an object library that has a source for each header. Including a header twice checks its
# include guard.
function(toolkit_header_check name standard)
    set(sources)
    foreach(header IN LISTS ARGN)
        set(source "${CMAKE_CURRENT_BINARY_DIR}/package/headers/${header}.cpp")
        file(CONFIGURE OUTPUT "${source}" CONTENT "#include <${header}>\n#include <${header}>\n")
        list(APPEND sources "${source}")
    endforeach()
    add_library(${name} OBJECT EXCLUDE_FROM_ALL ${sources})
    set_target_properties(
        ${name} PROPERTIES CXX_STANDARD ${standard} CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF
    )
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/sources")
    target_compile_options(
        ${name} PRIVATE -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
    )
endfunction()

foreach(standard IN ITEMS 17 20)
    set(name PublicHeadersCxx${standard})
    toolkit_header_check(${name} ${standard} ${public_headers})
    toolkit_header_check(Framework${name} ${standard} ${framework_headers})
    target_link_libraries(Framework${name} PRIVATE Toolkit::wxBase)
    add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} --build "${PROJECT_BINARY_DIR}" --target ${name}
                                  Framework${name}
    )
    # Two builds in one directory would interfere with each other.
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK BuildDirectory TIMEOUT 600)
endforeach()
