toolkit_test(ipc/IPCClientTest.cpp)
toolkit_test(ipc/IPCMemoryTest.cpp)
target_sources(IPCMemoryTest PRIVATE support/OutOfMemory.cpp)
toolkit_test(ipc/IPCServerLimitsTest.cpp)
toolkit_test(ipc/IPCServerTest.cpp)
toolkit_test(ipc/IPCServiceTest.cpp)
foreach(test ipc/SessionTest.cpp ipc/SessionsTest.cpp)
    toolkit_private_test(
        ${test}
        base/FileDescriptor.cpp
        base/Fork.cpp
        base/OwnDescriptor.cpp
        base/ShortenName.cpp
        base/Utf8.cpp
        ipc/Protocol.cpp
        ipc/Session.cpp
        ipc/Socket.Linux.cpp
        ipc/Socket.cpp
    )
endforeach()

toolkit_private_test(
    ipc/SocketSetTest.cpp base/FileDescriptor.cpp base/Fork.cpp base/OwnDescriptor.cpp
    ipc/Socket.Linux.cpp ipc/Socket.cpp
)

toolkit_test_program(IPCClientTest TOOLKIT_TEST_BARE_SERVER ipc/BareServerProgram.cpp)
toolkit_test_program(IPCClientTest TOOLKIT_TEST_IPC_CLIENT ipc/IPCClientProgram.cpp)
toolkit_test_program(IPCClientTest TOOLKIT_TEST_IPC_SERVER ipc/IPCServerProgram.cpp)
toolkit_test_program(IPCServerTest TOOLKIT_TEST_BARE_CLIENT ipc/BareClientProgram.cpp)
# These two use the clients and servers of wxWidgets itself.
target_link_libraries(BareClientProgram PRIVATE Toolkit::wxNet)
target_link_libraries(BareServerProgram PRIVATE Toolkit::wxNet)
# Programs that a second test runs.
target_compile_definitions(
    IPCMemoryTest PRIVATE TOOLKIT_TEST_IPC_CLIENT="$<TARGET_FILE:IPCClientProgram>"
)
add_dependencies(IPCMemoryTest IPCClientProgram)
target_compile_definitions(
    IPCServiceTest PRIVATE TOOLKIT_TEST_IPC_SERVER="$<TARGET_FILE:IPCServerProgram>"
)
add_dependencies(IPCServiceTest IPCServerProgram)
