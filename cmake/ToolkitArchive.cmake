# `cpack --config build/release/CPackConfig.cmake` creates a .tar.gz of the installed tree, which can be
# unpacked anywhere.

set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGE_NAME toolkit)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME "toolkit-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_VENDOR "Toolkit")
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 0)
include(CPack)
