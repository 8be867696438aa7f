toolkit_test(regExp/GroupCollectionTest.cpp)
toolkit_private_test(
    regExp/MatchGroupsTest.cpp regExp/MatchGroups.cpp ${TOOLKIT_REGEX_SOURCES_needed}
    ${TOOLKIT_REGEX_SOURCES_${TOOLKIT_REGEX_ENGINE_USED}}
)
target_link_libraries(MatchGroupsTest PRIVATE Toolkit::${TOOLKIT_REGEX_ENGINE_USED})
toolkit_test(regExp/MatchResultTest.cpp)
toolkit_private_test(
    regExp/AtomicRecursionTest.cpp regExp/AtomicRecursion.cpp regExp/PatternItems.cpp
)
toolkit_private_test(regExp/PatternNestingTest.cpp ${TOOLKIT_REGEX_SOURCES_needed})
if(TARGET Toolkit::pcre2)
    toolkit_private_test(regExp/Pcre2ErrorsTest.cpp regExp/Pcre2Errors.cpp)
    target_link_libraries(Pcre2ErrorsTest PRIVATE Toolkit::pcre2)
endif()

# Where both engines are installed, their results are compared.
if(TARGET Toolkit::pcre AND TARGET Toolkit::pcre2)
    set(sources ${TOOLKIT_REGEX_SOURCES} ${TOOLKIT_REGEX_SOURCES_pcre} ${TOOLKIT_REGEX_SOURCES_pcre2})
    # The engine tables in regExp/engines include these sources.
    list(REMOVE_ITEM sources regExp/PatternEngine.Pcre.cpp regExp/PatternEngine.Pcre2.cpp)
    toolkit_private_test(regExp/EngineDifferenceTest.cpp ${sources})
    target_sources(
        EngineDifferenceTest
        PRIVATE regExp/engines/EngineSwitch.cpp regExp/engines/Pcre2Table.cpp
                regExp/engines/PcreTable.cpp regExp/engines/RandomPattern.cpp
    )
    target_link_libraries(EngineDifferenceTest PRIVATE Toolkit::pcre Toolkit::pcre2)
endif()
toolkit_private_test(regExp/PatternTraitsTest.cpp regExp/PatternTraits.cpp)
toolkit_test(regExp/RegExpExceptionTest.cpp)
toolkit_test(regExp/RegExpMemoryTest.cpp)
target_sources(RegExpMemoryTest PRIVATE support/OutOfMemory.cpp)
# The reference calls PCRE 1. EngineDifferenceTest compares PCRE 2 with it.
if(TOOLKIT_REGEX_ENGINE_USED STREQUAL "pcre")
    toolkit_test(regExp/RegExpReferenceTest.cpp)
    target_link_libraries(RegExpReferenceTest PRIVATE Toolkit::pcre)
endif()
toolkit_test(regExp/RegExpReplaceTest.cpp)
# ThreadSanitizer's data for each thread does not fit on the small stacks.
if(NOT TOOLKIT_SANITIZE STREQUAL "thread")
    toolkit_test(regExp/RegExpStackTest.cpp)
endif()
toolkit_test(regExp/RegExpTest.cpp)
target_sources(RegExpTest PRIVATE support/OutOfMemory.cpp)

# The engines' own messages differ.
if(TOOLKIT_REGEX_ENGINE_USED STREQUAL "pcre2")
    target_compile_definitions(RegExpExceptionTest PRIVATE TOOLKIT_USES_PCRE2)
    if(TARGET RegExpStackTest)
        target_compile_definitions(RegExpStackTest PRIVATE TOOLKIT_USES_PCRE2)
    endif()
endif()

# Plug-ins from every available compiler: each catches what the others throw.
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
    toolkit_file_test(RegExpPluginTest regExp)
endif()
