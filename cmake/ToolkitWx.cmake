# Toolkit::wxBase and Toolkit::wxNet: the wxWidgets libraries that need no user interface.
#
# Used by the library's own build and by its installed package. If wxWidgets is missing, the targets are
# not defined.

# A function, so that find_package() leaves the caller's wxWidgets_... variables unchanged.
function(toolkit_find_wx)
    find_package(wxWidgets 3.2 QUIET COMPONENTS net base)
    if(NOT wxWidgets_FOUND)
        return()
    endif()
    set(libraries_Net ${wxWidgets_LIBRARIES})
    set(libraries_Base ${wxWidgets_LIBRARIES})
    list(FILTER libraries_Base EXCLUDE REGEX "_net")

    foreach(component IN ITEMS Base Net)
        set(target Toolkit::wx${component})
        add_library(${target} INTERFACE IMPORTED GLOBAL)
        target_include_directories(${target} SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
        # Otherwise the headers require the user interface libraries.
        target_compile_definitions(${target} INTERFACE ${wxWidgets_DEFINITIONS} wxUSE_GUI=0)
        target_compile_options(${target} INTERFACE ${wxWidgets_CXX_FLAGS})
        target_link_directories(${target} INTERFACE ${wxWidgets_LIBRARY_DIRS})
        target_link_libraries(${target} INTERFACE ${libraries_${component}})
    endforeach()
endfunction()

if(NOT TARGET Toolkit::wxBase)
    toolkit_find_wx()
endif()
