#pragma once

// The interface between the example host and its plug-ins. A plug-in is a shared library in the
// host's plug-ins folder. It includes this header and, in one source file,
//
//  - registers a module of its own for as long as it is loaded, by a ModuleRegistration,
//  - defines GetHostPlugIn(), which returns its commands.
//
// It is compiled with hidden visibility: the host makes the symbols of every plug-in known to those
// that are loaded later, and of two visible classes with one name only the first would be used.

#include <cstddef>
#include <exception>
#include <toolkit/core/TString.h>
#include <toolkit/core/smart_ptr.h>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/module/LibModuleManager.h>
#include <toolkit/regExp/RegExp.Exceptions.h>

namespace HostPlugIn {

/// Changes with every change of this header. Host and plug-in must have the same version.
constexpr unsigned int c_interfaceVersion = 1;

/// What the host offers to a running command. The host provides it; it is used on the thread that
/// runs the command, until the command returns. No operation throws.
class CommandRun {
public:
    /// Whether the option was on the command line. `option` is written as in `Option::name`.
    virtual bool IsDefined(const wchar_t* option) const noexcept = 0;

    /// The value of an option; empty when there is none. Paths are absolute: a relative one means
    /// the directory in which the command was typed.
    virtual const TString<wchar_t>& GetValue(const wchar_t* option) const noexcept = 0;

    /// Appends bytes to the result, which appears when the command has succeeded. False when they
    /// cannot be stored: the command has failed and may return.
    virtual bool Write(const char* bytes, std::size_t count) noexcept = 0;

    /// Reports that `done` of `total` units are done; `unit` is their name, such as L"entries". A
    /// total of 0 is unknown. May be called often: the host shows some of it. False when the host
    /// wants to stop: the command has failed and should return soon.
    virtual bool Progress(unsigned long long done, unsigned long long total,
                          const wchar_t* unit) noexcept = 0;

    /// Warns the user that the result is incomplete. The command continues.
    virtual void Warn(const TString<wchar_t>& message) noexcept = 0;

    /// Shows the user why the command fails; of several messages the first counts. Always false:
    ///
    ///     if (!file.Open(path, L"rb"))
    ///         return run.Fail(L"cannot read " + path);
    virtual bool Fail(const TString<wchar_t>& message) noexcept = 0;

    /// Appends a line to the result, in UTF-8.
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

    const wchar_t* name; ///< In lower case, without the dash. "out" and "from" are the host's.
    Kind kind;           ///< The host makes paths absolute.
    bool isRequired;     ///< The host refuses a command line without it, or without its value.
};

/// A command: the first word of a command line.
struct Command {
    const wchar_t* name; ///< One word without a dash at its beginning, unique among all plug-ins.
    const wchar_t* help; ///< One line.
    const Option* options;
    std::size_t optionCount;

    /// Does the work, on a worker thread; commands run one at a time. False when it failed, and
    /// its result is dropped. See `RunGuarded`.
    bool (*run)(CommandRun& run) noexcept;
};

/// How a plug-in describes itself.
struct PlugIn {
    unsigned int interfaceVersion; ///< `c_interfaceVersion`; the first member in every version.
    const wchar_t* name;
    const wchar_t* failure; ///< Why the plug-in is unusable; null when it is usable. See below.
    const Command* commands;
    std::size_t commandCount;
};

/// A command's function for `Command::run` from one that may throw: `RunGuarded<ListEntries>`. What
/// it throws becomes the message of the failure.
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

/// Registers a module when the plug-in is loaded and takes it back when it is unloaded:
///
///     ArchiveModule s_module;
///     const HostPlugIn::ModuleRegistration s_registration(s_module);
///
/// The host has started the library by then, so the module is initialised at once. What its
/// `Initialize()` throws is kept as the plug-in's failure; the module's `Release()` is called all
/// the same. Without this, an exception would get into the system's loader and end the host, as one
/// from any other global object's constructor does.
class ModuleRegistration {
public:
    explicit ModuleRegistration(Toolkit::LibModule& module) noexcept : m_module(module)
    {
        try {
            Toolkit::LibModuleManager::GetInstance()->Register(&m_module);
        } catch (const std::exception& exception) {
            TakeBack();
            m_failure = L"its module does not start: " + Toolkit::UTF8::ToUNICODE(exception.what());
        } catch (...) {
            TakeBack();
            m_failure = L"its module does not start";
        }
    }
    ~ModuleRegistration() { TakeBack(); }

    ModuleRegistration(const ModuleRegistration&) = delete;
    ModuleRegistration& operator=(const ModuleRegistration&) = delete;

    /// For `PlugIn::failure`.
    const wchar_t* GetFailure() const { return m_failure.empty() ? nullptr : m_failure.c_str(); }

private:
    void TakeBack() noexcept
    {
        try {
            Toolkit::LibModuleManager::GetInstance()->Unregister(&m_module);
        } catch (...) {
            m_failure = L"its module does not stop";
        }
    }

    Toolkit::LibModule& m_module;
    TString<wchar_t> m_failure;
};

} // namespace HostPlugIn

/// The one function that a plug-in exports. The host calls it once, after loading, and uses what
/// it points to until it unloads the plug-in. Null means that the plug-in is unusable.
extern "C" __attribute__((visibility("default"))) const HostPlugIn::PlugIn*
GetHostPlugIn() noexcept;
