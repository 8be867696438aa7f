# Installs headers, library, CMake package and pkg-config module.

include(CMakePackageConfigHelpers)

set(package_directory "${CMAKE_INSTALL_LIBDIR}/cmake/Toolkit")

install(
    TARGETS Toolkit
    EXPORT ToolkitTargets
    FILE_SET HEADERS
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
)
install(
    EXPORT ToolkitTargets
    NAMESPACE Toolkit::
    DESTINATION "${package_directory}"
)

# Threads and log forwarders of a program derive from wxWidgets classes, so every program needs
# wxWidgets. With a static library a program also links the library's other dependencies.
set(package_dependencies Wx)
set(package_dependency_targets Toolkit::wxBase)
set(pc_wx Toolkit::wxBase)
set(pc_requires "")
if(NOT BUILD_SHARED_LIBS)
    set(pc_wx Toolkit::wxNet)
    list(APPEND package_dependency_targets Toolkit::wxNet)
    # The engine's CMake module is named after its target, with a capital letter.
    string(REGEX REPLACE "^p" "P" engine_module "${TOOLKIT_REGEX_ENGINE_USED}")
    list(APPEND package_dependencies ${engine_module})
    list(APPEND package_dependency_targets Toolkit::${TOOLKIT_REGEX_ENGINE_USED})
    set(pc_requires_pcre libpcre)
    set(pc_requires_pcre2 libpcre2-8)
    set(pc_requires ${pc_requires_${TOOLKIT_REGEX_ENGINE_USED}})
endif()

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/ToolkitConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/package/ToolkitConfig.cmake"
    INSTALL_DESTINATION "${package_directory}"
    NO_SET_AND_CHECK_MACRO
)
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/package/ToolkitConfigVersion.cmake" COMPATIBILITY SameMajorVersion
)
set(package_files "${package_dependencies}")
list(TRANSFORM package_files REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/cmake/Toolkit\\1.cmake")
install(FILES "${PROJECT_BINARY_DIR}/package/ToolkitConfig.cmake"
              "${PROJECT_BINARY_DIR}/package/ToolkitConfigVersion.cmake"
              ${package_files}
        DESTINATION "${package_directory}"
)

# Stores the items of `property` of `target` in `result`, each with the prefix `flag`, as one string.
function(toolkit_flags result target property flag)
    get_target_property(items ${target} ${property})
    list(FILTER items EXCLUDE REGEX "^$|-NOTFOUND$")
    list(TRANSFORM items PREPEND "${flag}")
    list(JOIN items " " flags)
    set(${result} "${flags}" PARENT_SCOPE)
endfunction()

# toolkit.pc contains the flags of wxWidgets, because wxWidgets has no pkg-config module to require.
toolkit_flags(pc_includes ${pc_wx} INTERFACE_INCLUDE_DIRECTORIES "-isystem ")
toolkit_flags(pc_definitions ${pc_wx} INTERFACE_COMPILE_DEFINITIONS "-D")
toolkit_flags(pc_options ${pc_wx} INTERFACE_COMPILE_OPTIONS "")
toolkit_flags(pc_libs ${pc_wx} INTERFACE_LINK_LIBRARIES "")
set(pc_cflags "${pc_includes} ${pc_definitions} ${pc_options}")
# Relative to toolkit.pc, so that an installed tree can be moved.
file(RELATIVE_PATH pc_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" pc_prefix "${pc_prefix}")
configure_file(
    "${PROJECT_SOURCE_DIR}/cmake/toolkit.pc.in" "${PROJECT_BINARY_DIR}/package/toolkit.pc" @ONLY
)
install(FILES "${PROJECT_BINARY_DIR}/package/toolkit.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
)

# gdb loads a script of this name from the library's folder, so an installed tree can be moved.
# Distributions set TOOLKIT_GDB_DIR to the full path of that folder below gdb's auto-load folder.
if(BUILD_SHARED_LIBS AND NOT APPLE)
    set(TOOLKIT_GDB_DIR "${CMAKE_INSTALL_LIBDIR}" CACHE STRING "Where gdb's script is installed")
    install(FILES "${PROJECT_SOURCE_DIR}/gdb/toolkit_printers.py"
            DESTINATION "${TOOLKIT_GDB_DIR}"
            RENAME "libtoolkit.so.${PROJECT_VERSION}-gdb.py"
    )
endif()

# Removes the files that were last installed from this build folder.
if(NOT TARGET uninstall)
    add_custom_target(
        uninstall
        COMMAND "${CMAKE_COMMAND}" "-DMANIFEST=${PROJECT_BINARY_DIR}/install_manifest.txt" -P
                "${PROJECT_SOURCE_DIR}/cmake/ToolkitUninstall.cmake"
        COMMENT "Removing the installed files"
        VERBATIM
    )
endif()

if(PROJECT_IS_TOP_LEVEL)
    include(ToolkitArchive)
endif()
