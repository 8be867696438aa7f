#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <system_error>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/ipc/IPCClient.h>
#include <toolkit/ipc/IPCServer.h>
#include <vector>

#include "Commands.h"
#include "Failure.h"
#include "InputPath.h"
#include "IpcListener.h"
#include "Output.h"
#include "OwnSockets.h"
#include "VisibleText.h"

using namespace Toolkit;

namespace Tool {
namespace {

struct Options {
    std::string service;
    std::string text;
    unsigned int count = 0;
};

TString<wchar_t> GetService(const Options& options)
{
    TString<wchar_t> service = ToWideArgument(options.service);
    if (service.empty() || IPCServer::GetSocketPath(service).empty())
        throw Failure("not a valid service name: \"" + options.service + "\"");
    return service;
}

int Send(const Options& options, Output&)
{
    const TString<wchar_t> service = GetService(options);
    if (IPCClient::Connect(service, ToWideArgument(options.text)))
        return ExitSuccess;
    const std::string path = UTF8::ToUTF8(IPCServer::GetSocketPath(service));
    const std::string reason = IPCClient::IsServed(service)
                                   ? "the server did not accept the message"
                                   : "no server listens at " + path;
    std::cerr << "toolkit: not delivered: " << MakeVisible(reason) << '\n';
    return ExitNegative;
}

int Listen(const Options& options, Output& output)
{
    return IpcListener(output, options.count).Run(GetService(options));
}

// Returns the sockets in /tmp, where applications listen, and in the working directory, where a
// service without "/" in its name listens.
std::vector<std::string> ListSockets()
{
    namespace fs = std::filesystem;

    std::vector<std::string> paths = FindOwnSockets(c_temporaryDirectory);
    std::error_code error;
    const fs::path workingDirectory = fs::current_path(error);
    if (error || fs::equivalent(workingDirectory, c_temporaryDirectory, error))
        return paths;
    for (std::string& path : FindOwnSockets(workingDirectory))
        paths.push_back(std::move(path));
    return paths;
}

int List(const Options&, Output& output)
{
    for (const std::string& path : ListSockets()) {
        const bool isLive = IPCClient::IsServed(UTF8::ToUNICODE(path));
        output.Write(isLive ? "live  " : "stale ", isLive ? Output::Green : Output::Yellow);
        output.WriteVisible(path);
        output.Write("\n");
    }
    return ExitSuccess;
}

CLI::App* Add(CLI::App& ipc, const char* name, const char* description,
              const std::shared_ptr<Options>& options, Action& action,
              int (*run)(const Options&, Output&))
{
    CLI::App* const command = ipc.add_subcommand(name, description);
    command->callback([options, run, &action] {
        action = [options, run](Output& output) { return run(*options, output); };
    });
    return command;
}

void AddService(CLI::App& command, Options& options)
{
    command
        .add_option("service", options.service,
                    "Path of the socket file; a name without / is in the current directory")
        ->required();
}

} // namespace

void AddIpcCommand(CLI::App& app, Action& action)
{
    CLI::App* const ipc = app.add_subcommand("ipc", "Send and receive local messages");
    ipc->require_subcommand(1);
    const auto options = std::make_shared<Options>();

    CLI::App* const send = Add(*ipc, "send", "Send a message to a service", options, action, Send);
    AddService(*send, *options);
    send->add_option("text", options->text, "The message")->required();

    CLI::App* const listen =
        Add(*ipc, "listen", "Run a service and print its messages", options, action, Listen);
    AddService(*listen, *options);
    listen->add_option("-n,--count", options->count, "Exit after this many messages");

    Add(*ipc, "list", "List the sockets of this user, live and stale", options, action, List);
}

} // namespace Tool
