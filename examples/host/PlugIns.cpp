#include "PlugIns.h"

#include <algorithm>
#include <toolkit/encoding/StringConvert.h>
#include <toolkit/files/Directory.h>
#include <toolkit/files/PathManager.h>
#include <toolkit/logging/Log.h>
#include <utility>

using namespace Toolkit;
using HostPlugIn::Command;
using HostPlugIn::PlugIn;

namespace {

using GetPlugIn = decltype(&GetHostPlugIn);

Text DescribeVersionMismatch(unsigned int version)
{
    return L"it uses version " + StringConvert::UStringFromUint32(version) +
           L" of the interface, but the host uses version " +
           StringConvert::UStringFromUint32(HostPlugIn::c_interfaceVersion);
}

} // namespace

PlugIns::~PlugIns()
{
    while (!m_plugIns.empty())
        m_plugIns.pop_back();
}

void PlugIns::Load(const Text& folder)
{
    std::vector<Text> names;
    Directory(folder).GetFiles(L"*.so", names);
    std::sort(names.begin(), names.end());
    for (const Text& name : names) {
        Text path;
        PathManager::AppendPath(path, folder, name);
        const Text error = LoadLibrary(path);
        if (!error.empty())
            Fail(L"Skipped the plug-in " + path + L": " + error);
    }
}

const Command* PlugIns::FindCommand(const Text& name) const
{
    for (const Command* const command : GetCommands()) {
        if (name == command->name)
            return command;
    }
    return nullptr;
}

std::vector<const Command*> PlugIns::GetCommands() const
{
    std::vector<const Command*> commands;
    for (const LoadedPlugIn& loaded : m_plugIns) {
        for (std::size_t i = 0; i < loaded.plugIn->commandCount; ++i)
            commands.push_back(&loaded.plugIn->commands[i]);
    }
    return commands;
}

// Returns why the library is unusable; an empty string if it is usable.
Text PlugIns::LoadLibrary(const Text& path)
{
    auto library = std::make_unique<DynamicLibrary>(path);
    const auto getPlugIn = reinterpret_cast<GetPlugIn>(library->GetSymbol(L"GetHostPlugIn"));
    if (!getPlugIn) {
        const Text& error = library->GetError();
        return error.empty() ? Text(L"it has no function GetHostPlugIn")
                             : L"it cannot be loaded: " + error;
    }
    const PlugIn* const plugIn = getPlugIn();
    Text error = Validate(plugIn);
    if (!error.empty())
        return error;
    TOOLKIT_LOG(SeverityInfo) << L"Plug-in " << plugIn->name << L": " << path
                              << ILogger::c_strLogToken3;
    m_plugIns.push_back({std::move(library), plugIn});
    return Text();
}

// Returns why `plugIn` is unusable; an empty string if it is usable. If the interface versions
// differ, no other member may be read.
Text PlugIns::Validate(const PlugIn* plugIn) const
{
    if (!plugIn)
        return L"it reports that it is unusable";
    if (plugIn->interfaceVersion != HostPlugIn::c_interfaceVersion)
        return DescribeVersionMismatch(plugIn->interfaceVersion);
    if (plugIn->failure)
        return plugIn->failure;
    for (std::size_t i = 0; i < plugIn->commandCount; ++i) {
        if (FindCommand(plugIn->commands[i].name))
            return Text(L"another plug-in already provides the command \"") +
                   plugIn->commands[i].name + L"\"";
    }
    return Text();
}
