toolkit_test(threading/EventObjectTest.cpp)
toolkit_test(threading/FrameworkHoldTest.cpp)
toolkit_test(threading/MutexTest.cpp)
toolkit_test(threading/ThreadTest.cpp)
target_sources(ThreadTest PRIVATE support/OutOfMemory.cpp)
toolkit_test(threading/BackgroundOperationTest.cpp)
toolkit_test(threading/EventNotifierTest.cpp)

# Clang must accept a use of a guarded member under its lock, and reject an unlocked use.
find_program(TOOLKIT_CLANG NAMES clang++)
if(TOOLKIT_CLANG)
    set(check
        "${TOOLKIT_CLANG}" -std=c++17 -fsyntax-only -Werror=thread-safety
        "-I${PROJECT_SOURCE_DIR}/sources" "${CMAKE_CURRENT_SOURCE_DIR}/threading/GuardedMember.cpp"
    )
    add_test(NAME ThreadSafetyTest.AcceptsALockedUse COMMAND ${check})
    add_test(NAME ThreadSafetyTest.RejectsAnUnlockedUse COMMAND ${check} -DUNLOCKED)
    set_tests_properties(
        ThreadSafetyTest.RejectsAnUnlockedUse
        PROPERTIES PASS_REGULAR_EXPRESSION "reading variable 'm_balance' requires holding mutex 'm_lock'"
    )
endif()
