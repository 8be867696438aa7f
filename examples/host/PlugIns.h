#pragma once

#include <memory>
#include <toolkit/files/DynamicLibrary.h>
#include <vector>

#include "PlugIn.h"
#include "Terminal.h"

/// The plug-ins that the host has loaded. The destructor unloads them, the last one first.
class PlugIns {
public:
    PlugIns() = default;
    ~PlugIns();

    PlugIns(const PlugIns&) = delete;
    PlugIns& operator=(const PlugIns&) = delete;

    /// Loads every "*.so" in `folder`, in the order of their names. Skips unusable files, and
    /// prints and logs the reason.
    void Load(const Text& folder);

    /// Returns the command called `name`; null if no plug-in has it.
    const HostPlugIn::Command* FindCommand(const Text& name) const;

    /// Returns all commands, in the order of the plug-ins.
    std::vector<const HostPlugIn::Command*> GetCommands() const;

private:
    Text LoadLibrary(const Text& path);
    Text Validate(const HostPlugIn::PlugIn* plugIn) const;

    struct LoadedPlugIn {
        std::unique_ptr<Toolkit::DynamicLibrary> library;
        const HostPlugIn::PlugIn* plugIn; // owned by the library
    };
    std::vector<LoadedPlugIn> m_plugIns;
};
