find_package(Boost REQUIRED COMPONENTS regex)
find_package(Poco REQUIRED COMPONENTS Foundation)
find_package(Qt5 REQUIRED COMPONENTS Core)
pkg_check_modules(re2 REQUIRED IMPORTED_TARGET re2)
pkg_check_modules(pcre2 REQUIRED IMPORTED_TARGET libpcre2-8)
toolkit_benchmark(
    regExp/RegExpBenchmark.cpp Boost::regex PkgConfig::pcre2 PkgConfig::re2 Poco::Foundation
    Qt5::Core $<TARGET_NAME_IF_EXISTS:Toolkit::pcre>
)

# Measures RegExp on PCRE 2. Where the library uses PCRE 1, compiles the sources of RegExp into the program.
if(TARGET Toolkit::pcre2)
    toolkit_benchmark(regExp/RegExpPcre2Benchmark.cpp Toolkit::pcre2)
    if(TOOLKIT_REGEX_ENGINE_USED STREQUAL "pcre")
        set(sources ${TOOLKIT_REGEX_SOURCES} ${TOOLKIT_REGEX_SOURCES_pcre2})
        list(TRANSFORM sources PREPEND "${PROJECT_SOURCE_DIR}/sources/toolkit/")
        target_sources(RegExpPcre2Benchmark PRIVATE ${sources})
    endif()
endif()
