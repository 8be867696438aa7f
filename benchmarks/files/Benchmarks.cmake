toolkit_benchmark(files/DirectoryBenchmark.cpp)
