find_package(Poco REQUIRED COMPONENTS Zip)
pkg_check_modules(Libzip REQUIRED IMPORTED_TARGET libzip)
# Its include directory has a zip.h that hides the one of the other library.
find_library(TOOLKIT_MINIZIP_LIBRARY minizip REQUIRED)
mark_as_advanced(TOOLKIT_MINIZIP_LIBRARY)

toolkit_benchmark(
    archive/ArchiveZipBenchmark.cpp PkgConfig::Libzip Poco::Zip "${TOOLKIT_MINIZIP_LIBRARY}"
)
