toolkit_test(ipc/IPCClientTest.cpp)
toolkit_test(ipc/IPCServerTest.cpp)

toolkit_test_program(IPCClientTest TOOLKIT_TEST_BARE_SERVER ipc/BareServerProgram.cpp)
toolkit_test_program(IPCClientTest TOOLKIT_TEST_IPC_CLIENT ipc/IPCClientProgram.cpp)
toolkit_test_program(IPCClientTest TOOLKIT_TEST_IPC_SERVER ipc/IPCServerProgram.cpp)
toolkit_test_program(IPCServerTest TOOLKIT_TEST_BARE_CLIENT ipc/BareClientProgram.cpp)
# The framework's own clients and servers.
target_link_libraries(BareClientProgram PRIVATE Toolkit::wxNet)
target_link_libraries(BareServerProgram PRIVATE Toolkit::wxNet)
target_compile_definitions(
    IPCServerTest PRIVATE TOOLKIT_TEST_IPC_SERVER="$<TARGET_FILE:IPCServerProgram>"
)
add_dependencies(IPCServerTest IPCServerProgram)
