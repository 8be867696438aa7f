# Every public operation, while each of its allocations fails. A sanitizer finds what leaks then.
set(sweep
    memory/AllocationFault.cpp
    memory/ArchiveOperations.cpp
    memory/CoreOperations.cpp
    memory/DateOperations.cpp
    memory/FileOperations.cpp
    memory/LogOperations.cpp
    memory/MessageOperations.cpp
    memory/PatternOperations.cpp
    memory/Sweep.cpp
    memory/SystemOperations.cpp
    memory/TextOperations.cpp
    memory/ThreadOperations.cpp
    support/ScarceMemory.cpp
)
# Its allocator decides for all threads without a lock, which ThreadSanitizer reports.
if(NOT TOOLKIT_SANITIZE STREQUAL "thread")
    toolkit_test(memory/OutOfMemorySweepTest.cpp)
    target_sources(OutOfMemorySweepTest PRIVATE ${sweep} archive/ZipWriter.cpp)
endif()

# A sanitizer would end the child processes before their outcome is known.
if(NOT TOOLKIT_SANITIZE)
    toolkit_test(memory/ForeignAllocationTest.cpp)
    target_sources(ForeignAllocationTest PRIVATE ${sweep} archive/ZipWriter.cpp)
endif()

# The list of what is swept, against the symbols that the library exports.
toolkit_test(memory/SweptOperationsTest.cpp)
target_sources(SweptOperationsTest PRIVATE ${sweep} archive/ZipWriter.cpp)
target_compile_definitions(
    SweptOperationsTest
    PRIVATE EXPORTED_SYMBOLS="${PROJECT_SOURCE_DIR}/abi/symbols.txt"
            PRIVATE_OPERATIONS="${CMAKE_CURRENT_SOURCE_DIR}/memory/PrivateOperations.txt"
)
