# Adds a test that runs the command of this build.
function(toolkit_tool_test source)
    toolkit_test(${source})
    cmake_path(GET source STEM name)
    target_compile_definitions(
        ${name} PRIVATE TOOLKIT_COMMAND="$<TARGET_FILE:ToolkitCommand>"
                        TOOLKIT_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    )
    add_dependencies(${name} ToolkitCommand)
endfunction()

toolkit_tool_test(tools/AboutCommandTest.cpp)
toolkit_tool_test(tools/CommandTest.cpp)
toolkit_tool_test(tools/CompletionTest.cpp)
toolkit_tool_test(tools/IniCommandTest.cpp)
toolkit_tool_test(tools/IpcCommandTest.cpp)
toolkit_tool_test(tools/LogCommandTest.cpp)
toolkit_tool_test(tools/LogFollowTest.cpp)
toolkit_tool_test(tools/LogSpeedTest.cpp)
toolkit_tool_test(tools/ManPageTest.cpp)
toolkit_tool_test(tools/PathsCommandTest.cpp)
toolkit_tool_test(tools/ZipCommandTest.cpp)
target_sources(ZipCommandTest PRIVATE archive/RawZip.cpp)
