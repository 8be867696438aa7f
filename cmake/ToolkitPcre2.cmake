# Toolkit::pcre2: PCRE 2, one of the two engines for regular expressions.
#
# Used by the library's own build and by the installed package of a static library. The target is not
# defined if PCRE 2 is missing or older than 10.30: older versions match recursively on the stack.

find_path(TOOLKIT_PCRE2_INCLUDE_DIR pcre2.h)
find_library(TOOLKIT_PCRE2_LIBRARY pcre2-8)
mark_as_advanced(TOOLKIT_PCRE2_INCLUDE_DIR TOOLKIT_PCRE2_LIBRARY)

function(toolkit_find_pcre2)
    if(NOT TOOLKIT_PCRE2_INCLUDE_DIR OR NOT TOOLKIT_PCRE2_LIBRARY)
        return()
    endif()
    set(define "^#define PCRE2_(MAJOR|MINOR) +([0-9]+).*")
    file(STRINGS "${TOOLKIT_PCRE2_INCLUDE_DIR}/pcre2.h" version REGEX "${define}")
    list(TRANSFORM version REPLACE "${define}" "\\2")
    list(JOIN version "." version)
    if(version VERSION_LESS 10.30)
        return()
    endif()
    add_library(Toolkit::pcre2 INTERFACE IMPORTED GLOBAL)
    target_include_directories(Toolkit::pcre2 SYSTEM INTERFACE "${TOOLKIT_PCRE2_INCLUDE_DIR}")
    target_link_libraries(Toolkit::pcre2 INTERFACE "${TOOLKIT_PCRE2_LIBRARY}")
endfunction()

if(NOT TARGET Toolkit::pcre2)
    toolkit_find_pcre2()
endif()
