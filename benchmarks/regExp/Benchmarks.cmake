find_package(Boost REQUIRED COMPONENTS regex)
find_package(Poco REQUIRED COMPONENTS Foundation)
find_package(Qt5 REQUIRED COMPONENTS Core)
pkg_check_modules(re2 REQUIRED IMPORTED_TARGET re2)
pkg_check_modules(pcre2 REQUIRED IMPORTED_TARGET libpcre2-8)
toolkit_benchmark(
    regExp/RegExpBenchmark.cpp Boost::regex PkgConfig::pcre2 PkgConfig::re2 Poco::Foundation
    Qt5::Core Toolkit::pcre
)
