# ToolkitHardening: compiler and linker options of the library's release builds that stop a program whose
# memory is about to be corrupted. Empty without TOOLKIT_HARDENING, with sanitizers, which check more,
# and in other builds.

add_library(ToolkitHardening INTERFACE)
if(NOT TOOLKIT_HARDENING OR TOOLKIT_SANITIZE)
    return()
endif()

set(release "$<CONFIG:Release,MinSizeRel>")
# Undefined first: distributions define it themselves, to a number of their own.
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
