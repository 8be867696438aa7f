# Toolkit::wxBase and Toolkit::wxNet: the wxWidgets libraries without their user interface part.
#
# Used by the library's own build and by its installed package.

find_package(wxWidgets 3.2 QUIET REQUIRED COMPONENTS net base)

if(NOT TARGET Toolkit::wxBase)
    foreach(component IN ITEMS Base Net)
        add_library(Toolkit::wx${component} INTERFACE IMPORTED)
        target_include_directories(
            Toolkit::wx${component} SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS}
        )
        # Without wxUSE_GUI=0 the headers expect the libraries of the user interface.
        target_compile_definitions(
            Toolkit::wx${component} INTERFACE ${wxWidgets_DEFINITIONS} wxUSE_GUI=0
        )
        target_compile_options(Toolkit::wx${component} INTERFACE ${wxWidgets_CXX_FLAGS})
        target_link_directories(Toolkit::wx${component} INTERFACE ${wxWidgets_LIBRARY_DIRS})
    endforeach()

    set(toolkit_wxBaseLibraries ${wxWidgets_LIBRARIES})
    list(FILTER toolkit_wxBaseLibraries EXCLUDE REGEX "_net")
    target_link_libraries(Toolkit::wxBase INTERFACE ${toolkit_wxBaseLibraries})
    target_link_libraries(Toolkit::wxNet INTERFACE ${wxWidgets_LIBRARIES})
    unset(toolkit_wxBaseLibraries)
endif()
