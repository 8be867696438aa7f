toolkit_test(regExp/GroupCollectionTest.cpp)
toolkit_private_test(
    regExp/MatchGroupsTest.cpp regExp/MatchGroups.cpp regExp/PatternEngine.cpp
    base/StackSpace.$<IF:$<PLATFORM_ID:Darwin>,Mac,Linux>.cpp base/StackSpace.cpp
)
target_link_libraries(MatchGroupsTest PRIVATE Toolkit::pcre)
toolkit_test(regExp/MatchResultTest.cpp)
toolkit_private_test(regExp/PatternTraitsTest.cpp regExp/PatternTraits.cpp)
toolkit_test(regExp/RegExpExceptionTest.cpp)
toolkit_test(regExp/RegExpReferenceTest.cpp)
target_link_libraries(RegExpReferenceTest PRIVATE Toolkit::pcre)
toolkit_test(regExp/RegExpReplaceTest.cpp)
# ThreadSanitizer's own data of a thread does not fit into the small stacks.
if(NOT TOOLKIT_SANITIZE STREQUAL "thread")
    toolkit_test(regExp/RegExpStackTest.cpp)
endif()
toolkit_test(regExp/RegExpTest.cpp)
target_sources(RegExpTest PRIVATE support/ScarceMemory.cpp)

# Plug-ins of every compiler that is there: what one throws, the other's catch.
if(BUILD_SHARED_LIBS)
    set(plugins "")
    find_program(TOOLKIT_GCC g++)
    find_program(TOOLKIT_CLANG clang++)
    foreach(compiler IN ITEMS TOOLKIT_GCC TOOLKIT_CLANG)
        if(${compiler})
            set(plugin "${CMAKE_CURRENT_BINARY_DIR}/ThrowingPlugin.${compiler}.so")
            add_custom_command(
                OUTPUT "${plugin}"
                COMMAND
                    ${${compiler}} -std=c++17 -shared -fPIC -fvisibility=hidden
                    -fvisibility-inlines-hidden "-I${PROJECT_SOURCE_DIR}/sources"
                    "${CMAKE_CURRENT_SOURCE_DIR}/regExp/plugins/ThrowingPlugin.cpp" -o "${plugin}"
                    $<TARGET_FILE:Toolkit> "-Wl,-rpath,$<TARGET_FILE_DIR:Toolkit>"
                DEPENDS Toolkit "${CMAKE_CURRENT_SOURCE_DIR}/regExp/plugins/ThrowingPlugin.cpp"
                VERBATIM
            )
            list(APPEND plugins "${plugin}")
        endif()
    endforeach()

    add_executable(RegExpPluginTest regExp/RegExpPluginTest.cpp ${plugins})
    target_link_libraries(
        RegExpPluginTest PRIVATE ToolkitBuildOptions GTest::gtest_main ${CMAKE_DL_LIBS}
    )
    list(JOIN plugins ":" plugins)
    target_compile_definitions(RegExpPluginTest PRIVATE "TOOLKIT_PLUGINS=\"${plugins}\"")
    add_test(NAME RegExpPluginTest COMMAND RegExpPluginTest)
endif()
