# Toolkit::icu: the ICU libraries, which supply the user's date and time patterns.
#
# Used by the library's own build. If ICU is missing, the target is not defined.

function(toolkit_find_icu)
    find_package(ICU QUIET COMPONENTS i18n uc)
    if(NOT ICU_FOUND)
        return()
    endif()
    add_library(Toolkit::icu INTERFACE IMPORTED GLOBAL)
    target_include_directories(Toolkit::icu SYSTEM INTERFACE ${ICU_INCLUDE_DIRS})
    target_link_libraries(Toolkit::icu INTERFACE ${ICU_LIBRARIES})
endfunction()

if(NOT TARGET Toolkit::icu)
    toolkit_find_icu()
endif()
