find_package(Qt5 REQUIRED COMPONENTS Core)
find_package(Poco REQUIRED COMPONENTS Util)
pkg_check_modules(GLib REQUIRED IMPORTED_TARGET glib-2.0)

toolkit_benchmark(config/IniFileBenchmark.cpp Qt5::Core Poco::Util PkgConfig::GLib)
