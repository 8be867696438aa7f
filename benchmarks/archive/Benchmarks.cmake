find_package(Poco REQUIRED COMPONENTS Zip)
pkg_check_modules(Libzip REQUIRED IMPORTED_TARGET libzip)
# Not pkg_check_modules(): the include directory of minizip has a zip.h that would hide libzip's.
find_library(TOOLKIT_MINIZIP_LIBRARY minizip REQUIRED)
mark_as_advanced(TOOLKIT_MINIZIP_LIBRARY)

toolkit_benchmark(
    archive/ArchiveZipBenchmark.cpp PkgConfig::Libzip Poco::Zip "${TOOLKIT_MINIZIP_LIBRARY}"
)
