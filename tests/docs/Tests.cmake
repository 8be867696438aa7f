# The programs of the guide and of the pages about file formats. The first C++ block of a page is built
# and run, and must print the page's first text block. A page with several steps has one block of each
# kind per step.

# Writes the first block of `language` on the page to `file`, unless `file` contains it already. An
# optional number selects another block.
function(toolkit_page_block page language file)
    set(number 1)
    if(ARGC GREATER 3)
        set(number ${ARGV3})
    endif()
    file(READ "${page}" text)
    string(LENGTH "\n```${language}\n" opening)
    foreach(block RANGE 1 ${number})
        string(FIND "${text}" "\n```${language}\n" begin)
        if(begin EQUAL -1)
            message(FATAL_ERROR "${page} has no block ${block} of ${language}")
        endif()
        math(EXPR begin "${begin} + ${opening}")
        string(SUBSTRING "${text}" ${begin} -1 text)
    endforeach()
    string(FIND "${text}" "```" end)
    string(SUBSTRING "${text}" 0 ${end} text)
    file(WRITE "${file}.new" "${text}")
    file(COPY_FILE "${file}.new" "${file}" ONLY_IF_DIFFERENT)
endfunction()

# Builds the program of the page docs/<folder>/<name>.md and adds it as a test. An optional
# number selects a step of the page.
function(toolkit_page_program folder name)
    set(page "${PROJECT_SOURCE_DIR}/docs/${folder}/${name}.md")
    set(program ${folder}-${name})
    if(ARGC GREATER 2)
        string(APPEND program -${ARGV2})
    endif()
    set(block "${CMAKE_CURRENT_BINARY_DIR}/docs/${program}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${page}")
    toolkit_page_block("${page}" cpp "${block}.cpp" ${ARGN})
    toolkit_page_block("${page}" text "${block}.txt" ${ARGN})

    add_executable(${program} "${block}.cpp")
    target_link_libraries(${program} PRIVATE Toolkit::Toolkit ToolkitBuildOptions)
    add_test(
        NAME ${program}
        COMMAND
            ${CMAKE_COMMAND} "-DPROGRAM=$<TARGET_FILE:${program}>" "-DEXPECTED=${block}.txt"
            "-DDIRECTORY=${block}-run" -P "${CMAKE_CURRENT_SOURCE_DIR}/docs/RunProgram.cmake"
    )
    set_tests_properties(${program} PROPERTIES TIMEOUT 300)
endfunction()

foreach(
    name IN
    ITEMS core threading encoding logging config files system ipc regExp datetime archive module
)
    toolkit_page_program(guide ${name})
endforeach()
foreach(step RANGE 1 5)
    toolkit_page_program(guide first-program ${step})
endforeach()
toolkit_page_program(formats ini)
toolkit_page_program(formats serialized)

toolkit_test(docs/ArchitectureTest.cpp)
target_compile_definitions(ArchitectureTest PRIVATE TOOLKIT_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
toolkit_test(docs/FunctionNamesTest.cpp)
target_compile_definitions(FunctionNamesTest PRIVATE TOOLKIT_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
toolkit_test(docs/TestNamesTest.cpp)
target_compile_definitions(TestNamesTest PRIVATE TOOLKIT_SOURCE_DIR="${PROJECT_SOURCE_DIR}")

# The plug-in that the page about plug-ins shows, for a test that loads it.
if(BUILD_SHARED_LIBS)
    set(page "${PROJECT_SOURCE_DIR}/docs/plugins.md")
    set(block "${CMAKE_CURRENT_BINARY_DIR}/docs/plugins")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${page}")
    toolkit_page_block("${page}" cpp "${block}.cpp")
    add_library(PagePlugIn MODULE "${block}.cpp")
    set_target_properties(
        PagePlugIn PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    )
    target_link_libraries(PagePlugIn PRIVATE Toolkit::Toolkit ToolkitBuildOptions)

    toolkit_test(docs/PlugInPageTest.cpp)
    target_compile_definitions(
        PlugInPageTest PRIVATE TOOLKIT_TEST_PAGE_PLUG_IN=L"$<TARGET_FILE:PagePlugIn>"
    )
    add_dependencies(PlugInPageTest PagePlugIn)
endif()
