pkg_check_modules(Libzip REQUIRED IMPORTED_TARGET libzip)
# Its package's include directory has a zip.h that hides the other library's.
find_library(TOOLKIT_MINIZIP_LIBRARY minizip REQUIRED)
mark_as_advanced(TOOLKIT_MINIZIP_LIBRARY)

toolkit_benchmark(
    archive/ArchiveZipBenchmark.cpp PkgConfig::Libzip "${TOOLKIT_MINIZIP_LIBRARY}"
)
