# What the examples' tests read stands in the tree; the programs are those of this build.
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
