toolkit_test(module/FlowTest.cpp)
toolkit_test(module/LayoutTest.cpp)
toolkit_test(module/LibModuleManagerTest.cpp)
toolkit_test(module/LoadTest.cpp)
toolkit_test(module/ToolkitModuleTest.cpp)

toolkit_test_program(ToolkitModuleTest TOOLKIT_TEST_HOST_PROGRAM module/HostProgram.cpp)
toolkit_test_program(ToolkitModuleTest TOOLKIT_TEST_ORDER_PROGRAM module/OrderProgram.cpp)
toolkit_test_program(LoadTest TOOLKIT_TEST_SEQUENCE_PROGRAM module/SequenceProgram.cpp)

# The library's object files as a static library. ConstantsStaticProgram links it after its own
# object files, ConstantsStaticReversedProgram before them.
add_library(ToolkitArchive STATIC $<TARGET_OBJECTS:Toolkit>)
set_target_properties(ToolkitArchive PROPERTIES LINKER_LANGUAGE CXX)
get_target_property(needs Toolkit LINK_LIBRARIES)
list(FILTER needs EXCLUDE REGEX ToolkitBuildOptions)
target_link_libraries(ToolkitArchive INTERFACE ${needs})

foreach(name IN ITEMS Constants ConstantsStatic ConstantsStaticReversed)
    add_executable(${name}Program module/ConstantsProgram.cpp)
    target_include_directories(${name}Program PRIVATE "${PROJECT_SOURCE_DIR}/sources")
    list(APPEND constants_programs "\"$<TARGET_FILE:${name}Program>\"")
    add_dependencies(LoadTest ${name}Program)
endforeach()
target_link_libraries(ConstantsProgram PRIVATE Toolkit::Toolkit ToolkitBuildOptions)
target_link_libraries(ConstantsStaticProgram PRIVATE ToolkitArchive ToolkitBuildOptions)
target_link_libraries(ConstantsStaticReversedProgram PRIVATE ToolkitArchive ToolkitBuildOptions)
# Link options precede the program's own object files.
target_link_options(
    ConstantsStaticReversedProgram
    PRIVATE "LINKER:--whole-archive" "$<TARGET_FILE:ToolkitArchive>" "LINKER:--no-whole-archive"
)
list(JOIN constants_programs "," constants_programs)
target_compile_definitions(
    LoadTest PRIVATE "TOOLKIT_TEST_CONSTANTS_PROGRAMS=${constants_programs}"
)

if(BUILD_SHARED_LIBS)
    toolkit_test(module/InterfaceTest.cpp)
    target_link_libraries(InterfaceTest PRIVATE ${CMAKE_DL_LIBS})

    # UnloadProgram does not link the library: it loads it with dlopen().
    add_executable(UnloadProgram module/UnloadProgram.cpp)
    target_link_libraries(UnloadProgram PRIVATE ToolkitBuildOptions ${CMAKE_DL_LIBS})
    target_compile_definitions(
        LoadTest PRIVATE TOOLKIT_TEST_UNLOAD_PROGRAM="$<TARGET_FILE:UnloadProgram>"
    )
    add_dependencies(LoadTest UnloadProgram)
    toolkit_test_program(LoadTest TOOLKIT_TEST_PLUG_IN_HOST module/PlugInHost.cpp)
    target_link_libraries(PlugInHost PRIVATE ${CMAKE_DL_LIBS})
    add_library(PlugIn MODULE module/PlugIn.cpp)
    set_target_properties(PlugIn PROPERTIES CXX_VISIBILITY_PRESET hidden)
    target_link_libraries(PlugIn PRIVATE Toolkit::Toolkit ToolkitBuildOptions)
    add_dependencies(LoadTest PlugIn)
    set(plug_ins "\"$<TARGET_FILE:PlugIn>\"")

    # Plug-ins may come from a different compiler than their host.
    find_program(TOOLKIT_CLANG NAMES clang++ clang++-14)
    if(TOOLKIT_CLANG AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT TOOLKIT_SANITIZE)
        set(clang_plug_in "${CMAKE_CURRENT_BINARY_DIR}/ClangPlugIn.so")
        add_custom_command(
            OUTPUT "${clang_plug_in}"
            COMMAND
                "${TOOLKIT_CLANG}" -std=c++20 -fPIC -shared -fvisibility=hidden
                -I "${PROJECT_SOURCE_DIR}/sources" -o "${clang_plug_in}"
                "${CMAKE_CURRENT_SOURCE_DIR}/module/PlugIn.cpp" "$<TARGET_FILE:Toolkit>"
                "-Wl,-rpath,$<TARGET_FILE_DIR:Toolkit>"
            DEPENDS module/PlugIn.cpp module/PlugIn.h Toolkit
            VERBATIM
        )
        add_custom_target(ClangPlugIn DEPENDS "${clang_plug_in}")
        add_dependencies(LoadTest ClangPlugIn)
        string(APPEND plug_ins ",\"${clang_plug_in}\"")
    endif()
    target_compile_definitions(
        LoadTest PRIVATE TOOLKIT_TEST_LIBRARY="$<TARGET_FILE:Toolkit>"
                         "TOOLKIT_TEST_PLUG_INS=${plug_ins}"
    )
endif()

# Tests every way to end a process with every kind of live object. ThreadSanitizer does not support
# processes that fork, or end, while their threads run.
if(BUILD_SHARED_LIBS AND NOT TOOLKIT_SANITIZE MATCHES "thread")
    toolkit_test(module/ProcessEndTest.cpp)
    toolkit_test_program(
        ProcessEndTest TOOLKIT_TEST_PROCESS_END_PROGRAM module/ProcessEndProgram.cpp
    )
    target_sources(ProcessEndProgram PRIVATE module/ProcessEndScene.cpp)
    add_executable(ProcessEndUnlinkedHost module/ProcessEndUnlinkedHost.cpp)
    target_link_libraries(ProcessEndUnlinkedHost PRIVATE ToolkitBuildOptions ${CMAKE_DL_LIBS})
    add_dependencies(ProcessEndTest ProcessEndUnlinkedHost)
    set(plug_ins "")
    foreach(standard IN ITEMS 17 20)
        set(plug_in ProcessEndPlugIn${standard})
        add_library(${plug_in} MODULE module/ProcessEndScene.cpp)
        set_target_properties(${plug_in} PROPERTIES CXX_VISIBILITY_PRESET hidden)
        target_link_libraries(${plug_in} PRIVATE Toolkit::Toolkit ToolkitBuildOptions)
        target_compile_options(${plug_in} PRIVATE -std=c++${standard})
        add_dependencies(ProcessEndTest ${plug_in})
        list(APPEND plug_ins "\"$<TARGET_FILE:${plug_in}>\"")
    endforeach()
    list(JOIN plug_ins "," plug_ins)
    target_compile_definitions(
        ProcessEndTest
        PRIVATE TOOLKIT_TEST_PROCESS_END_UNLINKED_HOST="$<TARGET_FILE:ProcessEndUnlinkedHost>"
                "TOOLKIT_TEST_PROCESS_END_PLUG_INS=${plug_ins}"
    )
endif()

if(NOT TOOLKIT_SANITIZE MATCHES "thread")
    toolkit_test(module/ForkTest.cpp)
    toolkit_test_program(ForkTest TOOLKIT_TEST_FORK_PROGRAM module/ForkProgram.cpp)
endif()
