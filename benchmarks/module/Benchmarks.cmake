find_package(Qt5 REQUIRED COMPONENTS Core)

toolkit_benchmark(module/StartBenchmark.cpp)

# Adds a program for the benchmark to start; the macro `definition` is its path.
function(toolkit_start_program definition name)
    add_executable(${name} module/${name}.cpp)
    target_link_libraries(${name} PRIVATE ToolkitBuildOptions ${ARGN})
    target_compile_definitions(
        StartBenchmark PRIVATE ${definition}="$<TARGET_FILE:${name}>"
    )
    add_dependencies(StartBenchmark ${name})
endfunction()

toolkit_start_program(START_TOOLKIT StartToolkit Toolkit::Toolkit)
toolkit_start_program(START_WX StartWx Toolkit::wxBase)
toolkit_start_program(START_WX_NET StartWxNet Toolkit::wxNet)
toolkit_start_program(START_QT StartQt Qt5::Core)

# The benchmark passes the path of the library to the loader, which then need not search for it.
set(shared "$<STREQUAL:$<TARGET_PROPERTY:Toolkit,TYPE>,SHARED_LIBRARY>")
target_compile_definitions(
    StartBenchmark PRIVATE START_TOOLKIT_LIBRARY="$<${shared}:$<TARGET_FILE:Toolkit>>"
)
set_target_properties(StartToolkit PROPERTIES SKIP_BUILD_RPATH ON)
