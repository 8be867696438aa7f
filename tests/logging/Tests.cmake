toolkit_test(logging/ConsoleLoggerTest.cpp)
toolkit_test(logging/DebuggerLoggerTest.cpp)
toolkit_test(logging/FileLoggerFaultTest.cpp)
target_sources(FileLoggerFaultTest PRIVATE support/ScarceMemory.cpp)
toolkit_test(logging/FileLoggerKillTest.cpp)
toolkit_test(logging/FileLoggerTest.cpp)
toolkit_test(logging/ILoggerTest.cpp)
toolkit_test(logging/LogTest.cpp)
toolkit_test(logging/NullLoggerTest.cpp)
toolkit_private_test(
    logging/PieceBlockTest.cpp logging/PieceBlock.cpp encoding/Utf8Codec.cpp
)
toolkit_private_test(logging/PieceQueueTest.cpp logging/PieceQueue.cpp)
toolkit_test(logging/WxLogForwarderTest.cpp)
