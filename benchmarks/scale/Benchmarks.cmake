# Measures how costs grow with the size of the input; `script/bench --scale` runs it.
add_executable(
    Scale
    scale/Archives.cpp
    scale/Encoding.cpp
    scale/Files.cpp
    scale/HeapMeter.cpp
    scale/Messages.cpp
    scale/Patterns.cpp
    scale/Scale.cpp
    scale/Settings.cpp
    scale/Text.cpp
    scale/Threads.cpp
)
target_include_directories(Scale PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
target_link_libraries(Scale PRIVATE Toolkit::Toolkit Toolkit::wxNet ToolkitBuildOptions)
