toolkit_test(logging/ConsoleLoggerTest.cpp)
toolkit_test(logging/DebuggerLoggerTest.cpp)
toolkit_test(logging/FileLoggerFaultTest.cpp)
target_sources(FileLoggerFaultTest PRIVATE support/OutOfMemory.cpp)
toolkit_test(logging/FileLoggerKillTest.cpp)
toolkit_test(logging/FileLoggerLockTest.cpp)
toolkit_test(logging/FileLoggerTest.cpp)
# UndefinedBehaviorSanitizer needs a pipe to check an object's type, but these two tests run out of
# descriptors on purpose. (The options of a source follow those of its target, which turn the check
# on.)
set_source_files_properties(
    logging/FileLoggerFaultTest.cpp logging/FileLoggerTest.cpp
    PROPERTIES COMPILE_OPTIONS -fno-sanitize=vptr
)
toolkit_test(logging/ILoggerTest.cpp)
target_sources(ILoggerTest PRIVATE support/OutOfMemory.cpp)
toolkit_test(logging/LogTest.cpp)
toolkit_test(logging/NullLoggerTest.cpp)
toolkit_private_test(
    logging/LogPieceBlockTest.cpp logging/LogPieceBlock.cpp base/Utf8.cpp
)
toolkit_private_test(
    logging/LogPieceQueueTest.cpp logging/LogPieceChunk.cpp logging/LogPieceQueue.cpp
)
toolkit_test(logging/ProcessLoggerTest.cpp)
toolkit_test(logging/WxLogForwarderTest.cpp)
