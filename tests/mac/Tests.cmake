# Tests of macOS sources on other systems, with stand-ins for the macOS functions that they call.

# Adds the test `name`, built from `source` and from the stand-ins and library sources after it.
function(toolkit_mac_test name source)
    add_executable(${name} ${source} ${ARGN})
    target_link_libraries(${name} PRIVATE ToolkitTestSupport)
    target_include_directories(${name} SYSTEM PRIVATE mac/include)
    target_compile_definitions(${name} PRIVATE TOOLKIT_MAC_STAND_INS)
    target_compile_options(${name} PRIVATE "SHELL:-include MacDeclarations.h")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()

if(NOT APPLE)
    set(library "${PROJECT_SOURCE_DIR}/sources/toolkit")
    toolkit_mac_test(
        FallbackPathsMacTest
        mac/FallbackPathsMacTest.cpp
        mac/SystemStandIns.cpp
        ${library}/base/ExecutablePath.Mac.cpp
        ${library}/base/UserAccount.cpp
        ${library}/base/Utf8.cpp
        ${library}/files/FallbackPaths.Mac.cpp
    )
    toolkit_mac_test(
        InheritedDescriptorsMacTest
        mac/InheritedDescriptorsMacTest.cpp
        ${library}/system/InheritedDescriptors.Mac.cpp
    )
    toolkit_mac_test(
        LocalePatternsMacTest
        mac/LocalePatternsMacTest.cpp
        mac/CoreFoundationStandIn.cpp
        ${library}/base/Utf8.cpp
        ${library}/system/LocalePatterns.CoreFoundation.cpp
    )
    toolkit_mac_test(
        SocketMacTest
        mac/SocketMacTest.cpp
        mac/KqueueStandIn.cpp
        mac/SystemStandIns.cpp
        ${library}/base/FileDescriptor.cpp
        ${library}/base/Fork.cpp
        ${library}/base/OwnDescriptor.cpp
        ${library}/ipc/Socket.Mac.cpp
        ${library}/ipc/Socket.cpp
    )
    toolkit_mac_test(
        SocketSetMacTest
        ipc/SocketSetTest.cpp
        mac/KqueueStandIn.cpp
        mac/SystemStandIns.cpp
        ${library}/base/FileDescriptor.cpp
        ${library}/base/Fork.cpp
        ${library}/base/OwnDescriptor.cpp
        ${library}/ipc/Socket.Mac.cpp
        ${library}/ipc/Socket.cpp
    )
    toolkit_mac_test(
        ThreadsMacTest
        mac/ThreadsMacTest.cpp
        mac/SystemStandIns.cpp
        ${library}/base/MainThread.Mac.cpp
        ${library}/base/StackSpace.Mac.cpp
        ${library}/base/StackSpace.cpp
    )
    toolkit_mac_test(
        TickCountMacTest mac/TickCountMacTest.cpp ${library}/base/TickCount.Mac.cpp
    )
endif()
