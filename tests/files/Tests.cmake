toolkit_test(files/FFileTest.cpp)
target_sources(FFileTest PRIVATE support/OutOfMemory.cpp)
toolkit_test(files/InputStreamTest.cpp)
toolkit_test(files/PathManagerProgramTest.cpp)
toolkit_test(files/PathManagerTest.cpp)
toolkit_test(files/TextFileTest.cpp)
target_sources(TextFileTest PRIVATE support/OutOfMemory.cpp)
toolkit_test(files/TextInputStreamTest.cpp)

# PathManagerProgramTest runs copies of this program under many names.
add_executable(PathProgram files/PathProgram.cpp)
target_link_libraries(PathProgram PRIVATE Toolkit::Toolkit ToolkitBuildOptions)
target_compile_definitions(
    PathManagerProgramTest PRIVATE PATH_PROGRAM="$<TARGET_FILE:PathProgram>"
)
add_dependencies(PathManagerProgramTest PathProgram)
toolkit_test(files/DirectoryTest.cpp)
target_sources(DirectoryTest PRIVATE support/OutOfMemory.cpp)

add_library(DynamicLibraryProbe MODULE files/DynamicLibraryProbe.cpp)
target_link_libraries(DynamicLibraryProbe PRIVATE ToolkitBuildOptions)
toolkit_test(files/DynamicLibraryTest.cpp)
# Calls a function that does not exist. With -z undefs, the linker accepts that.
add_library(UnresolvedProbe MODULE files/UnresolvedProbe.cpp)
target_link_options(UnresolvedProbe PRIVATE -Wl,-z,undefs)
target_compile_definitions(
    DynamicLibraryTest PRIVATE PROBE_LIBRARY="$<TARGET_FILE:DynamicLibraryProbe>"
                               UNRESOLVED_LIBRARY="$<TARGET_FILE:UnresolvedProbe>"
)
add_dependencies(DynamicLibraryTest DynamicLibraryProbe UnresolvedProbe)
