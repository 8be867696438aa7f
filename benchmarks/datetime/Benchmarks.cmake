find_package(fmt REQUIRED)

toolkit_benchmark(datetime/DateTimeBenchmark.cpp fmt::fmt)
