#pragma once

/// The interface that the test's plug-in exports.
struct PlugInOperations {
    /// Throws a `smart_ptr<Version>`.
    void (*throwVersion)();
    /// Calls `action` and prints the `Version` that it throws.
    void (*catchVersion)(void (*action)());
};

extern "C" __attribute__((visibility("default"))) PlugInOperations GetPlugInOperations();
