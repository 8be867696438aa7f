# Runs PROGRAM in the empty directory DIRECTORY/home, which is also its home directory. Fails unless the
# program exits with 0 and prints exactly the contents of the file EXPECTED.

file(REMOVE_RECURSE "${DIRECTORY}")
file(MAKE_DIRECTORY "${DIRECTORY}/home")
# Logs are named after their programs, and several runs of this test may overlap.
string(RANDOM LENGTH 16 name)
file(COPY_FILE "${PROGRAM}" "${DIRECTORY}/${name}")
set(ENV{HOME} "${DIRECTORY}/home")
set(ENV{TZ} "Europe/Berlin")
set(ENV{LC_ALL} "en_US.UTF-8")

execute_process(
    COMMAND "${DIRECTORY}/${name}"
    WORKING_DIRECTORY "${DIRECTORY}/home"
    RESULT_VARIABLE result
    OUTPUT_VARIABLE output
    ERROR_VARIABLE errors
    TIMEOUT 240
)
file(READ "${EXPECTED}" expected)
if(NOT "${result}" STREQUAL "0" OR NOT "${output}${errors}" STREQUAL "${expected}")
    message(FATAL_ERROR "exited with ${result}, expected output:\n${expected}\n"
                        "actual output:\n${output}${errors}"
    )
endif()
