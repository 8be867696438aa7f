# What `cmake --install` puts in place: headers, library, CMake package and pkg-config module.

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

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/ToolkitConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/package/ToolkitConfig.cmake"
    INSTALL_DESTINATION "${package_directory}"
    NO_SET_AND_CHECK_MACRO
)
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/package/ToolkitConfigVersion.cmake" COMPATIBILITY SameMajorVersion
)
install(FILES "${PROJECT_BINARY_DIR}/package/ToolkitConfig.cmake"
              "${PROJECT_BINARY_DIR}/package/ToolkitConfigVersion.cmake"
              "${PROJECT_SOURCE_DIR}/cmake/ToolkitWx.cmake"
        DESTINATION "${package_directory}"
)

# Writes into `result` what the property of the imported target holds, each item behind `flag`.
function(toolkit_flags result target property flag)
    get_target_property(items ${target} ${property})
    list(FILTER items EXCLUDE REGEX "^$|-NOTFOUND$")
    list(TRANSFORM items PREPEND "${flag}")
    list(JOIN items " " flags)
    set(${result} "${flags}" PARENT_SCOPE)
endfunction()

# wxWidgets has no pkg-config module that could be named as a requirement.
toolkit_flags(pc_includes Toolkit::wxBase INTERFACE_INCLUDE_DIRECTORIES "-isystem ")
toolkit_flags(pc_definitions Toolkit::wxBase INTERFACE_COMPILE_DEFINITIONS "-D")
toolkit_flags(pc_options Toolkit::wxBase INTERFACE_COMPILE_OPTIONS "")
set(pc_cflags "${pc_includes} ${pc_definitions} ${pc_options}")
# A program links a static library together with all that is inside it.
if(BUILD_SHARED_LIBS)
    toolkit_flags(pc_libs Toolkit::wxBase INTERFACE_LINK_LIBRARIES "")
else()
    toolkit_flags(pc_libs Toolkit::wxNet INTERFACE_LINK_LIBRARIES "")
endif()
# Relative to the file itself, so that an installed tree may be moved.
file(RELATIVE_PATH pc_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" pc_prefix "${pc_prefix}")
configure_file(
    "${PROJECT_SOURCE_DIR}/cmake/toolkit.pc.in" "${PROJECT_BINARY_DIR}/package/toolkit.pc" @ONLY
)
install(FILES "${PROJECT_BINARY_DIR}/package/toolkit.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
)
