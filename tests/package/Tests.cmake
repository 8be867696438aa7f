# Tests of what programs use: the public headers, the exported symbols, the installed copy.

# A plain program cannot link a library that needs a sanitizer's run-time library.
if(TOOLKIT_SANITIZE)
    return()
endif()

include(package/PublicHeaders.cmake)

set(package_sources "${CMAKE_CURRENT_SOURCE_DIR}/package")
set(package_binaries "${CMAKE_CURRENT_BINARY_DIR}/package")
set(package_prefix "${package_binaries}/prefix")

# Adds a test that configures and builds the project in `folder`, and runs its `program` unless that
# is empty. Passes further arguments to CMake.
function(toolkit_program_test name folder program)
    cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY "${package_sources}")
    set(test_command)
    if(program)
        set(test_command --test-command ${program})
    endif()
    add_test(
        NAME ${name}
        COMMAND
            ${CMAKE_CTEST_COMMAND}
            --build-and-test "${folder}" "${package_binaries}/${name}"
            --build-generator ${CMAKE_GENERATOR}
            --build-options
            -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
            -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
            ${ARGN}
            ${test_command}
    )
    set_tests_properties(${name} PROPERTIES TIMEOUT 900)
endfunction()

# Adds a test that configures a project, which must fail in find_package(Toolkit) with a message that
# contains `words`. Passes further arguments to CMake.
function(toolkit_refusal_test name words)
    add_test(NAME ${name}
             COMMAND ${CMAKE_COMMAND} --fresh -S "${package_sources}/refusal" -B
                     "${package_binaries}/${name}" -G ${CMAKE_GENERATOR}
                     -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
                     "-DCMAKE_PREFIX_PATH=${package_prefix}" ${ARGN}
    )
    # CMake may wrap the message at any space.
    string(REPLACE " " "[ \n]+" words "${words}")
    set_tests_properties(
        ${name} PROPERTIES FIXTURES_REQUIRED InstalledCopy PASS_REGULAR_EXPRESSION "${words}"
    )
endfunction()

# Adds a test that builds the consumer against an installed copy with pkg-config and runs it.
function(toolkit_pkg_config_test name prefix)
    add_test(
        NAME ${name}
        COMMAND
            "${package_sources}/pkg-config-consumer.sh" ${CMAKE_CXX_COMPILER} "${prefix}"
            ${CMAKE_INSTALL_LIBDIR} "${package_sources}/consumer/main.cpp"
            "${package_binaries}/${name}"
    )
endfunction()

if(BUILD_SHARED_LIBS)
    add_test(NAME PackageInstall
             COMMAND ${CMAKE_COMMAND} --install "${PROJECT_BINARY_DIR}" --prefix "${package_prefix}"
    )
    # Each installation writes install_manifest.txt to the build folder, so two must not overlap.
    set_tests_properties(
        PackageInstall PROPERTIES FIXTURES_SETUP InstalledCopy RESOURCE_LOCK Installation
    )
    add_test(NAME PackageUninstall COMMAND "${package_sources}/uninstall.sh"
                                           "${PROJECT_BINARY_DIR}" "${PROJECT_SOURCE_DIR}"
    )
    add_test(NAME PackageArchive
             COMMAND
                 "${package_sources}/archive.sh" "${PROJECT_BINARY_DIR}" ${CMAKE_CXX_COMPILER}
                 ${CMAKE_INSTALL_LIBDIR} "${package_sources}/consumer/main.cpp"
    )
    set_tests_properties(PackageUninstall PackageArchive PROPERTIES RESOURCE_LOCK Installation)

    toolkit_program_test(
        PackageByCMake consumer Consumer "-DCMAKE_PREFIX_PATH=${package_prefix}"
    )
    toolkit_pkg_config_test(PackageByPkgConfig "${package_prefix}")
    add_test(NAME PackagePrinters
             COMMAND "${package_sources}/printers.sh" ${CMAKE_CXX_COMPILER} "${package_prefix}"
                     ${CMAKE_INSTALL_LIBDIR}
    )
    set_tests_properties(PackagePrinters PROPERTIES FIXTURES_REQUIRED InstalledCopy)
    toolkit_refusal_test(PackageRejectsComponents "Toolkit has no components" -DCOMPONENT=Net)
    toolkit_refusal_test(
        PackageNamesAMissingDependency "apt-get install libwxgtk3.2-dev"
        -DCMAKE_DISABLE_FIND_PACKAGE_wxWidgets=ON
    )
    # Builds and runs the README's program with the README's commands.
    add_test(NAME PackageReadme COMMAND "${package_sources}/readme.sh"
                                        "${PROJECT_SOURCE_DIR}/README.md" "${package_prefix}"
                                        "${package_prefix}/${CMAKE_INSTALL_LIBDIR}"
    )
    set_tests_properties(PackageReadme PROPERTIES FIXTURES_REQUIRED InstalledCopy)
    # Builds the plug-in of docs/plugins.md with the project on that page.
    set(page_plug_in "${package_binaries}/PagePlugInSource")
    file(MAKE_DIRECTORY "${page_plug_in}")
    toolkit_page_block("${PROJECT_SOURCE_DIR}/docs/plugins.md" cpp "${page_plug_in}/Tides.cpp")
    toolkit_page_block(
        "${PROJECT_SOURCE_DIR}/docs/plugins.md" cmake "${page_plug_in}/CMakeLists.txt"
    )
    toolkit_program_test(
        PackagePlugIn "${page_plug_in}" "" "-DCMAKE_PREFIX_PATH=${package_prefix}"
    )
    set(library "${package_prefix}/${CMAKE_INSTALL_LIBDIR}/$<TARGET_FILE_NAME:Toolkit>")
    add_test(NAME PackageExportedSymbols
             COMMAND "${package_sources}/exported-symbols.sh" "${library}"
                     "${package_prefix}/${CMAKE_INSTALL_INCLUDEDIR}"
    )
    add_test(NAME PackageDebianSymbols
             COMMAND "${package_sources}/debian-symbols.sh" "$<TARGET_FILE:Toolkit>"
                     "${PROJECT_SOURCE_DIR}/debian/libtoolkit1.symbols"
    )
    add_test(NAME PackageRunTimeNeeds
             COMMAND "${package_sources}/run-time-needs.sh" "${library}"
    )
    # The example host and its plug-ins, each a separate project built against the installed copy.
    set(host_prefix "${package_binaries}/host-prefix")
    foreach(example IN ITEMS host plugins)
        set(name PackageExample_${example})
        toolkit_program_test(
            ${name} "${PROJECT_SOURCE_DIR}/examples/${example}" ""
            "-DCMAKE_PREFIX_PATH=${package_prefix}"
        )
        set_tests_properties(
            ${name} PROPERTIES FIXTURES_REQUIRED InstalledCopy FIXTURES_SETUP ${name}
        )
        add_test(NAME ${name}_Install COMMAND ${CMAKE_COMMAND} --install
                                              "${package_binaries}/${name}" --prefix "${host_prefix}"
        )
        set_tests_properties(
            ${name}_Install PROPERTIES FIXTURES_REQUIRED ${name} FIXTURES_SETUP InstalledHost
        )
    endforeach()
    add_test(NAME PackageHostDemo COMMAND "${package_sources}/host-demo.sh"
                                          "${PROJECT_SOURCE_DIR}/examples/host/run-demo.sh"
                                          "${host_prefix}"
    )
    set_tests_properties(PackageHostDemo PROPERTIES FIXTURES_REQUIRED InstalledHost)
    set_tests_properties(
        PackageByCMake PackageByPkgConfig PackageExportedSymbols PackagePlugIn PackageRunTimeNeeds
        PROPERTIES FIXTURES_REQUIRED InstalledCopy
    )
endif()

# An embedding build gets a shared library by default.
toolkit_program_test(
    PackageEmbedded embedding program/Embedding "-DTOOLKIT_SOURCE_DIR=${PROJECT_SOURCE_DIR}"
)
toolkit_program_test(
    PackageEmbeddedStatic embedding program/Embedding "-DTOOLKIT_SOURCE_DIR=${PROJECT_SOURCE_DIR}"
    -DBUILD_SHARED_LIBS=OFF -DTOOLKIT_INSTALL=ON
)
set_tests_properties(PackageEmbeddedStatic PROPERTIES FIXTURES_SETUP StaticLibrary)

set(package_static_prefix "${package_binaries}/static-prefix")
add_test(NAME PackageInstallStatic
         COMMAND ${CMAKE_COMMAND} --install "${package_binaries}/PackageEmbeddedStatic"
                 --prefix "${package_static_prefix}"
)
set_tests_properties(
    PackageInstallStatic PROPERTIES FIXTURES_REQUIRED StaticLibrary FIXTURES_SETUP StaticCopy
)
toolkit_program_test(
    PackageStaticByCMake consumer Consumer "-DCMAKE_PREFIX_PATH=${package_static_prefix}"
)
toolkit_pkg_config_test(PackageStaticByPkgConfig "${package_static_prefix}")
set_tests_properties(
    PackageStaticByCMake PackageStaticByPkgConfig PROPERTIES FIXTURES_REQUIRED StaticCopy
)

# Compares only a sample of the objects; script/soak compares the whole library.
add_test(NAME PackageReproducible COMMAND "${PROJECT_SOURCE_DIR}/script/reproducible" --sample)
set_tests_properties(
    PackageReproducible PROPERTIES ENVIRONMENT "CXX=${CMAKE_CXX_COMPILER}" TIMEOUT 300
)

# The baseline comes from a GCC build with debug information, so only such a build can be compared.
find_program(TOOLKIT_ABIDW abidw)
if(BUILD_SHARED_LIBS AND TOOLKIT_ABIDW AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU"
   AND CMAKE_BUILD_TYPE STREQUAL "RelWithDebInfo"
)
    add_test(NAME AbiBaseline
             COMMAND "${PROJECT_SOURCE_DIR}/script/abi" "${PROJECT_BINARY_DIR}"
    )
    set_tests_properties(AbiBaseline PROPERTIES RESOURCE_LOCK Installation)
endif()
