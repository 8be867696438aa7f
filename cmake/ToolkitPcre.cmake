# Toolkit::pcre: PCRE 1, one of the two engines for regular expressions.
#
# Used by the library's own build and by the installed package of a static library. If PCRE 1 is
# missing, the target is not defined.

find_path(TOOLKIT_PCRE_INCLUDE_DIR pcre.h)
find_library(TOOLKIT_PCRE_LIBRARY pcre)
mark_as_advanced(TOOLKIT_PCRE_INCLUDE_DIR TOOLKIT_PCRE_LIBRARY)

if(TOOLKIT_PCRE_INCLUDE_DIR AND TOOLKIT_PCRE_LIBRARY AND NOT TARGET Toolkit::pcre)
    add_library(Toolkit::pcre INTERFACE IMPORTED GLOBAL)
    target_include_directories(Toolkit::pcre SYSTEM INTERFACE "${TOOLKIT_PCRE_INCLUDE_DIR}")
    target_link_libraries(Toolkit::pcre INTERFACE "${TOOLKIT_PCRE_LIBRARY}")
endif()
