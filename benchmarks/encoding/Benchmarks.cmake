find_package(Boost REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc)
find_package(OpenSSL REQUIRED)
find_package(Qt5 REQUIRED COMPONENTS Core)
find_package(fmt REQUIRED)
pkg_check_modules(GLib REQUIRED IMPORTED_TARGET glib-2.0)
pkg_check_modules(GMime REQUIRED IMPORTED_TARGET gmime-3.0)

toolkit_benchmark(
    encoding/Base64Benchmark.cpp OpenSSL::Crypto Qt5::Core PkgConfig::GLib
)
toolkit_benchmark(encoding/QuotedPrintableBenchmark.cpp PkgConfig::GMime)
# Compiles the codec, which the library does not export, into the program, to measure it without the
# conversions of wide strings.
target_sources(
    QuotedPrintableBenchmark
    PRIVATE "${PROJECT_SOURCE_DIR}/sources/toolkit/encoding/QuotedPrintableCodec.cpp"
)
toolkit_benchmark(encoding/StringConvertBenchmark.cpp fmt::fmt)
toolkit_benchmark(encoding/UTF8Benchmark.cpp Boost::headers ICU::uc)
