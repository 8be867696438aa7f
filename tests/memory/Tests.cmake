# Runs every public operation while each of its allocations fails in turn. A sanitizer build also
# detects the leaks.
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
    support/OutOfMemory.cpp
)
# AllocationFault shares data between threads without a lock, which ThreadSanitizer reports.
if(NOT TOOLKIT_SANITIZE STREQUAL "thread")
    toolkit_test(memory/OutOfMemorySweepTest.cpp)
    target_sources(OutOfMemorySweepTest PRIVATE ${sweep} archive/ZipWriter.cpp)
endif()

# A sanitizer would end the child processes before their outcome is known.
if(NOT TOOLKIT_SANITIZE)
    toolkit_test(memory/ForeignAllocationTest.cpp)
    target_sources(ForeignAllocationTest PRIVATE ${sweep} archive/ZipWriter.cpp)
endif()

# Compares the operations of the sweep with the symbols that the library exports.
toolkit_test(memory/SweptOperationsTest.cpp)
target_sources(SweptOperationsTest PRIVATE ${sweep} archive/ZipWriter.cpp)
target_compile_definitions(
    SweptOperationsTest
    PRIVATE EXPORTED_SYMBOLS="${PROJECT_SOURCE_DIR}/abi/symbols.txt"
            PRIVATE_OPERATIONS="${CMAKE_CURRENT_SOURCE_DIR}/memory/PrivateOperations.txt"
)
