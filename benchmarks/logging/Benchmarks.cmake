find_package(spdlog REQUIRED)

toolkit_benchmark(logging/FileLoggerBenchmark.cpp spdlog::spdlog)
