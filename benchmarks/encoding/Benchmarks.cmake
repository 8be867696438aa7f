find_package(Boost REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc)
find_package(fmt REQUIRED)

toolkit_benchmark(encoding/StringConvertBenchmark.cpp fmt::fmt)
toolkit_benchmark(encoding/UTF8Benchmark.cpp Boost::headers ICU::uc)
