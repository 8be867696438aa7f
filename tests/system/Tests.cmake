toolkit_private_test(system/LocalePatternsTest.cpp system/LocalePatterns.cpp)
if(NOT APPLE)
    toolkit_test(system/LocalesIcuTest.cpp)
    target_link_libraries(LocalesIcuTest PRIVATE Toolkit::icu Toolkit::wxBase)
endif()
toolkit_test(system/LocalesTest.cpp)
toolkit_test(system/MacCocoaTest.cpp)
toolkit_test(system/NetworkTest.cpp)
toolkit_test(system/RestartManagmentTest.cpp)
toolkit_test(system/SingleApplicationInstanceTest.cpp)
target_link_libraries(SingleApplicationInstanceTest PRIVATE Toolkit::wxBase)
toolkit_test(system/SystemInfoTest.cpp)
target_sources(SystemInfoTest PRIVATE support/OutOfMemory.cpp)
toolkit_test(system/TickCountTest.cpp)
toolkit_test(system/VersionTest.cpp)

toolkit_test_program(
    RestartManagmentTest TOOLKIT_TEST_RESTART_PROGRAM system/RestartProgram.cpp
)
toolkit_test_program(
    SingleApplicationInstanceTest TOOLKIT_TEST_INSTANCE_PROGRAM system/InstanceProgram.cpp
)
toolkit_test_program(SystemInfoTest TOOLKIT_TEST_STARTED_PROGRAM system/StartedProgram.cpp)
toolkit_test_program(SystemInfoTest TOOLKIT_TEST_STARTING_PROGRAM system/StartingProgram.cpp)
# SystemInfoTest describes operating systems with wxPlatformInfo.
target_link_libraries(SystemInfoTest PRIVATE Toolkit::wxBase)
