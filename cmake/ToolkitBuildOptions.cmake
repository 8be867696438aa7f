# Compiler options of the project's own targets. Targets that use the library do not inherit them.

add_library(ToolkitBuildOptions INTERFACE)
target_compile_features(ToolkitBuildOptions INTERFACE cxx_std_20)
target_compile_options(
    ToolkitBuildOptions
    INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
              # A unique symbol would pin the library in memory: it could never be unloaded.
              $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>
              # Calls into other libraries skip the PLT, because locking consists mostly of such calls.
              $<$<PLATFORM_ID:Linux>:-fno-plt>
)
# As a subproject, the library must not fail to build because of a newer compiler's warnings.
if(PROJECT_IS_TOP_LEVEL)
    target_compile_options(ToolkitBuildOptions INTERFACE -Werror)
endif()
# Release builds in different directories produce identical files.
target_compile_options(
    ToolkitBuildOptions
    INTERFACE "$<$<CONFIG:Release,MinSizeRel>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>"
)
if(TOOLKIT_SANITIZE)
    target_compile_options(
        ToolkitBuildOptions INTERFACE -fsanitize=${TOOLKIT_SANITIZE} -fno-omit-frame-pointer
                                      -fno-sanitize-recover=all
    )
    target_link_options(ToolkitBuildOptions INTERFACE -fsanitize=${TOOLKIT_SANITIZE})
endif()
if(TOOLKIT_BUILD_FUZZERS)
    target_compile_options(ToolkitBuildOptions INTERFACE -fsanitize=fuzzer-no-link)
endif()
