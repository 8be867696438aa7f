find_package(Boost REQUIRED)
find_package(Qt5 REQUIRED COMPONENTS Core)

toolkit_benchmark(core/FSStreamBenchmark.cpp)
toolkit_benchmark(core/SmartPtrBenchmark.cpp Boost::headers)
toolkit_benchmark(core/TStringBenchmark.cpp Boost::headers Qt5::Core)
