toolkit_benchmark(ipc/IPCBenchmark.cpp Toolkit::wxNet)
