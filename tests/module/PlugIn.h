#pragma once

/// What the plug-in of the test exports.
struct PlugInOperations {
    /// Throws a `smart_ptr<Version>`.
    void (*throwVersion)();
    /// Calls `action` and prints the version that it throws.
    void (*catchVersion)(void (*action)());
};

extern "C" __attribute__((visibility("default"))) PlugInOperations GetPlugInOperations();
