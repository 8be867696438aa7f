#pragma once

// The interface between the example host and its plug-ins. A plug-in is a shared library in the
// host's plug-ins folder. It includes this header and, in one source file,
//
//  - defines a ModuleRegistration, which keeps its module registered while the plug-in is loaded,
//  - defines GetHostPlugIn(), which returns its commands.
//
// Compile it with hidden visibility: DynamicLibrary loads plug-ins with RTLD_GLOBAL, so if two of
// them had visible classes of the same name, both would use the first.

#include <cstddef>
#include <exception>
#include <toolkit/core/TString.h>
#include <toolkit/core/smart_ptr.h>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/module/LibModuleManager.h>
#include <toolkit/regExp/RegExp.Exceptions.h>

namespace HostPlugIn {

/// Incremented with every change to this header. Host and plug-in must be built with the same
/// version.
constexpr unsigned int c_interfaceVersion = 1;

/// The host's services for a running command. Use it only on the thread that runs the command, and
/// only until the command returns. Only WriteLine() may throw: `std::bad_alloc`.
class CommandRun {
public:
    /// Whether the option was on the command line. `option` is its `Option::name`.
    virtual bool IsDefined(const wchar_t* option) const noexcept = 0;

    /// Returns the value of an option; empty if there is none. Paths are absolute: the host
    /// resolves relative ones against the directory in which the user entered the command.
    virtual const TString<wchar_t>& GetValue(const wchar_t* option) const noexcept = 0;

    /// Appends bytes to the result; its file appears when the command has succeeded. False if the
    /// bytes cannot be stored: the command has failed and should return.
    virtual bool Write(const char* bytes, std::size_t count) noexcept = 0;

    /// Reports that `done` of `total` units are done; `unit` is their name, such as L"entries". A
    /// `total` of 0 means that the total is unknown. Call it as often as you like: the host shows
    /// only some reports. False if the command was cancelled: it has failed and should return soon.
    virtual bool ReportProgress(unsigned long long done, unsigned long long total,
                                const wchar_t* unit) noexcept = 0;

    /// Warns the user that the result is incomplete. The command continues.
    virtual void Warn(const TString<wchar_t>& message) noexcept = 0;

    /// Sets the message that says why the command failed; only the first call counts. Always
    /// returns false:
    ///
    ///     if (!file.Open(path, L"rb"))
    ///         return run.Fail(L"cannot read " + path);
    virtual bool Fail(const TString<wchar_t>& message) noexcept = 0;

    /// Appends a line to the result, in UTF-8. Returns what Write() returns.
    bool WriteLine(const TString<wchar_t>& line)
    {
        const TString<char> bytes = Toolkit::UTF8::ToUTF8(line) + '\n';
        return Write(bytes.data(), bytes.size());
    }

protected:
    ~CommandRun() = default;
};

/// An option of a command, such as "-pattern fog".
struct Option {
    enum Kind { Flag, Value, Path };

    /// In lower case, without the dash. "out" and "from" are options of the host.
    const wchar_t* name;
    /// The host makes the value of a Path absolute.
    Kind kind;
    /// The host rejects a command line without the option, or without its value.
    bool isRequired;
};

/// A command. A command line begins with its name.
struct Command {
    const wchar_t* name; ///< One word without a leading dash, unique among all plug-ins.
    const wchar_t* help; ///< One line.
    const Option* options;
    std::size_t optionCount;

    /// Does the work, on a worker thread; commands run one at a time. Returns false on failure; the
    /// result is then discarded. See `RunGuarded`.
    bool (*run)(CommandRun& run) noexcept;
};

/// How a plug-in describes itself.
struct PlugIn {
    /// `c_interfaceVersion`; must stay the first member.
    unsigned int interfaceVersion;
    const wchar_t* name;
    /// Why the plug-in is unusable; null if it is usable. See `ModuleRegistration`.
    const wchar_t* failure;
    const Command* commands;
    std::size_t commandCount;
};

/// Turns a function that may throw into one for `Command::run`: `RunGuarded<ListEntries>`. An
/// exception fails the command, with the exception's message.
template <bool (*Run)(CommandRun&)>
bool RunGuarded(CommandRun& run) noexcept
{
    try {
        return Run(run);
    } catch (const Toolkit::smart_ptr<Toolkit::RegExpException>& exception) {
        return run.Fail(Toolkit::UTF8::ToUNICODE(exception->message));
    } catch (const std::exception& exception) {
        return run.Fail(Toolkit::UTF8::ToUNICODE(exception.what()));
    } catch (...) {
        return run.Fail(L"an unknown exception was thrown");
    }
}

/// Registers a module when the plug-in is loaded, and unregisters the module when the plug-in is
/// unloaded:
///
///     ArchiveModule s_module;
///     const HostPlugIn::ModuleRegistration s_registration(s_module);
///
/// The host has started the library by then, so the module is initialised immediately. If its
/// `Initialize()` throws, the message is stored as the plug-in's failure, and the module is not
/// registered. Uncaught, the exception would reach the dynamic loader and terminate the host, like
/// one from the constructor of any other global object.
class ModuleRegistration {
public:
    explicit ModuleRegistration(Toolkit::LibModule& module) noexcept : m_module(module)
    {
        try {
            Toolkit::LibModuleManager::GetInstance()->Register(&m_module);
        } catch (const std::exception& exception) {
            m_failure =
                L"its module failed to start: " + Toolkit::UTF8::ToUNICODE(exception.what());
        } catch (...) {
            m_failure = L"its module failed to start";
        }
    }
    ~ModuleRegistration()
    {
        try {
            Toolkit::LibModuleManager::GetInstance()->Unregister(&m_module);
        } catch (...) {
            // The plug-in is being unloaded and has no way left to report this.
        }
    }

    ModuleRegistration(const ModuleRegistration&) = delete;
    ModuleRegistration& operator=(const ModuleRegistration&) = delete;

    /// Returns the value for `PlugIn::failure`; null if the module is registered.
    const wchar_t* GetFailure() const { return m_failure.empty() ? nullptr : m_failure.c_str(); }

private:
    Toolkit::LibModule& m_module;
    TString<wchar_t> m_failure;
};

} // namespace HostPlugIn

/// The one function that a plug-in exports. The host calls it once, after loading, and uses the
/// result until it unloads the plug-in. Null means that the plug-in is unusable.
extern "C" __attribute__((visibility("default"))) const HostPlugIn::PlugIn*
GetHostPlugIn() noexcept;
