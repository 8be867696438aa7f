# The examples' tests read files of the tree and run the programs of this build.
function(toolkit_example_test source)
    toolkit_test(${source})
    cmake_path(GET source STEM name)
    target_compile_definitions(${name} PRIVATE TOOLKIT_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ${ARGN})
endfunction()

toolkit_example_test(examples/HelloTest.cpp HELLO_PROGRAM="$<TARGET_FILE:hello>")
toolkit_example_test(examples/HostTest.cpp HOST_PROGRAM="$<TARGET_FILE:host>")
toolkit_example_test(examples/MailToolTest.cpp MAILTOOL_PROGRAM="$<TARGET_FILE:mailtool>")
toolkit_example_test(examples/ReadmeTest.cpp)
add_dependencies(HelloTest hello)
add_dependencies(HostTest host)
add_dependencies(MailToolTest mailtool)

# There are no plug-ins for a static library.
if(NOT BUILD_SHARED_LIBS)
    return()
endif()

# Passes the path of the plug-in `target` to the tests in the macro `definition`.
function(toolkit_host_tests_use target definition)
    foreach(test IN ITEMS HostCommandsTest HostPlugInsTest HostServerTest)
        target_compile_definitions(${test} PRIVATE ${definition}="$<TARGET_FILE:${target}>")
        add_dependencies(${test} ${target})
    endforeach()
endfunction()

# Adds a plug-in that misbehaves, and passes its path to the tests in the macro `definition`.
function(toolkit_test_plug_in name definition)
    set(target ${name}PlugIn)
    string(TOLOWER ${name} library)
    add_library(${target} MODULE examples/plugins/${name}.cpp)
    set_target_properties(
        ${target} PROPERTIES OUTPUT_NAME ${library} PREFIX "" CXX_VISIBILITY_PRESET hidden
                             VISIBILITY_INLINES_HIDDEN ON
    )
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/examples/plugins")
    target_link_libraries(${target} PRIVATE Toolkit::Toolkit ToolkitBuildOptions)
    toolkit_host_tests_use(${target} ${definition})
endfunction()

foreach(test IN ITEMS HostCommandsTest HostPlugInsTest HostServerTest)
    toolkit_example_test(examples/${test}.cpp HOST_PROGRAM="$<TARGET_FILE:host>")
    add_dependencies(${test} host)
endforeach()
target_sources(HostCommandsTest PRIVATE archive/RawZip.cpp archive/ZipWriter.cpp)
target_sources(HostServerTest PRIVATE archive/ZipWriter.cpp)
toolkit_host_tests_use(ArchivePlugIn ARCHIVE_PLUG_IN)
toolkit_host_tests_use(EncodePlugIn ENCODE_PLUG_IN)
toolkit_host_tests_use(FindPlugIn FIND_PLUG_IN)
toolkit_test_plug_in(NoFunction NO_FUNCTION_PLUG_IN)
toolkit_test_plug_in(OddCommands ODD_COMMANDS_PLUG_IN)
toolkit_test_plug_in(OtherVersion OTHER_VERSION_PLUG_IN)
toolkit_test_plug_in(SecondList SECOND_LIST_PLUG_IN)
toolkit_test_plug_in(ThrowingModule THROWING_MODULE_PLUG_IN)
toolkit_test_plug_in(Unresolved UNRESOLVED_PLUG_IN)
target_link_options(UnresolvedPlugIn PRIVATE -Wl,-z,undefs)
toolkit_test_plug_in(Useless USELESS_PLUG_IN)
# The test starts hundreds of processes, which take long under a sanitizer.
set_tests_properties(HostServerTest PROPERTIES TIMEOUT 900)
