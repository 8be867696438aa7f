# ToolkitHardening: compiler and linker options for the library's release builds that detect memory errors
# at run time and make them harder to exploit. Empty if TOOLKIT_HARDENING is off, in other build types,
# and in builds with sanitizers, which check more.

add_library(ToolkitHardening INTERFACE)
if(NOT TOOLKIT_HARDENING OR TOOLKIT_SANITIZE)
    return()
endif()

set(release "$<CONFIG:Release,MinSizeRel>")
# Undefines _FORTIFY_SOURCE first: the compilers of some distributions predefine it with another value.
target_compile_options(
    ToolkitHardening
    INTERFACE "$<${release}:-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>"
)
target_compile_definitions(ToolkitHardening INTERFACE "$<${release}:_GLIBCXX_ASSERTIONS>")
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86)$")
    target_compile_options(ToolkitHardening INTERFACE "$<${release}:-fcf-protection>")
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    target_link_options(ToolkitHardening INTERFACE "$<${release}:LINKER:-z,relro,-z,now>")
endif()
