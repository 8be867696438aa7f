#pragma once

#include <memory>
#include <toolkit/files/DynamicLibrary.h>
#include <vector>

#include "PlugIn.h"
#include "Terminal.h"

/// The plug-ins that the host has loaded. They are unloaded with the object, the last one first.
class PlugIns {
public:
    PlugIns() = default;
    ~PlugIns();

    PlugIns(const PlugIns&) = delete;
    PlugIns& operator=(const PlugIns&) = delete;

    /// Loads every library of `folder`, in the order of their names. One that is unusable is
    /// unloaded again, and the reason is shown and logged.
    void Load(const Text& folder);

    /// The command called `name`; null when no plug-in has it.
    const HostPlugIn::Command* FindCommand(const Text& name) const;

    /// All commands, in the order of the plug-ins.
    std::vector<const HostPlugIn::Command*> GetCommands() const;

private:
    Text LoadLibrary(const Text& path);
    Text FindFault(const HostPlugIn::PlugIn* plugIn) const;

    struct LoadedPlugIn {
        std::unique_ptr<Toolkit::DynamicLibrary> library;
        const HostPlugIn::PlugIn* plugIn; // the library's
    };
    std::vector<LoadedPlugIn> m_plugIns;
};
