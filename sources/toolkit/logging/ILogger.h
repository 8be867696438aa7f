#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"
#include "toolkit/logging/LogSeverity.h"

#include <atomic>
#include <cstddef>
#include <string_view>
#include <type_traits>

namespace Toolkit {

/// Inserted into a logger, sets the severity of everything inserted after it.
class TOOLKIT_API SetSeverity {
public:
    explicit SetSeverity(LogSeverity severity) : m_severity(severity) {}
    LogSeverity GetSeverity() const { return m_severity; }

private:
    LogSeverity m_severity;
};

/// The base class of all loggers, and the access to the process-wide one.
///
/// A log statement is a chain of insertions. Each value that passes the filter is written with a
/// separate call of `Write`, so a line takes several calls. `TOOLKIT_LOG` begins a line in the form
/// that the whole library uses.
///
/// An insertion passes if the current severity, set by the last `SetSeverity`, is no greater than
/// the logger's threshold. All threads that write to a logger share its current severity, and their
/// lines may mix. An insertion fails silently: a value that does not fit into memory is omitted,
/// and standard exceptions from `Write` are caught.
class TOOLKIT_API ILogger {
    template <typename T>
    static constexpr bool c_isCharacter = std::is_same_v<std::remove_const_t<T>, char> ||
                                          std::is_same_v<std::remove_const_t<T>, wchar_t>;

public:
    /// Parts of a line: a space, " : ", and the line feed that ends it.
    static const TString<wchar_t> c_strLogToken1;
    static const TString<wchar_t> c_strLogToken2;
    static const TString<wchar_t> c_strLogToken3;

    /// Accepts text that is at least as severe as `threshold`. The current severity is
    /// `SeverityVerbose` until the first `SetSeverity`.
    explicit ILogger(LogSeverity threshold);
    virtual ~ILogger();

    ILogger(const ILogger&) = delete;
    ILogger& operator=(const ILogger&) = delete;

    /// Writes the text of one insertion that has passed the filter.
    virtual void Write(const TString<wchar_t>& text) = 0;

    /// Each operator inserts one value and returns the process-wide logger, even if the value was
    /// inserted into another one. A value that is filtered out is not converted. A null pointer
    /// counts as an empty string.
    ILogger& operator<<(const SetSeverity& severity);
    ILogger& operator<<(const TString<wchar_t>& text);
    /// Decodes `text`, up to its first null byte, from UTF-8; inserts an empty string if it is not
    /// valid.
    ILogger& operator<<(const TString<char>& text);
    ILogger& operator<<(const wchar_t* text);
    /// Does not decode `text`: each byte becomes the character with the same value.
    ILogger& operator<<(const char* text);
    template <std::size_t Length>
    ILogger& operator<<(const wchar_t (&text)[Length])
    {
        return *this << static_cast<const wchar_t*>(text);
    }
    template <std::size_t Length>
    ILogger& operator<<(const char (&text)[Length])
    {
        return *this << static_cast<const char*>(text);
    }
    /// Inserts a wide string view unchanged; decodes a narrow one like a `TString<char>`.
    template <typename Traits>
    ILogger& operator<<(std::basic_string_view<wchar_t, Traits> text)
    {
        return WriteView(std::wstring_view(text.data(), text.size()));
    }
    template <typename Traits>
    ILogger& operator<<(std::basic_string_view<char, Traits> text)
    {
        return WriteView(std::string_view(text.data(), text.size()));
    }
    /// Pointers to anything but characters do not compile: converted to bool, they would insert
    /// "1".
    template <typename T, typename = std::enable_if_t<!c_isCharacter<T>>>
    ILogger& operator<<(T* pointer) = delete;
    template <typename T, typename Class>
    ILogger& operator<<(T Class::*member) = delete;
    /// Numbers are inserted in decimal, without digit grouping; a severity as its number, a bool as
    /// "1" or "0", and a single character as its code: L'A' inserts "65".
    ILogger& operator<<(long long value);
    ILogger& operator<<(int value);
    ILogger& operator<<(short value);
    ILogger& operator<<(unsigned long long value);
    ILogger& operator<<(unsigned int value);
    ILogger& operator<<(unsigned short value);
    ILogger& operator<<(long value);
    ILogger& operator<<(unsigned long value);
    /// Inserts up to six significant digits, like `StringConvert`: "0.1", "1e+06".
    ILogger& operator<<(double value);
    ILogger& operator<<(float value);
    ILogger& operator<<(LogSeverity value);
    ILogger& operator<<(bool value);

    /// Returns a new logger that discards everything; empty when out of memory.
    static smart_ptr<ILogger> Create();

    /// Creates the process-wide logger, which discards everything until SetLogger() replaces it.
    /// Does nothing if there already is one, or when out of memory.
    static void CreateInstance();

    /// Returns a copy of the pointer to the process-wide logger; empty if there is none. The copy
    /// keeps the logger alive.
    static smart_ptr<ILogger> GetInstance();

    /// Releases the process-wide logger, which lives on while copies of its pointer exist. Not
    /// thread-safe: call it while no other thread logs.
    static void ReleaseInstance();

    /// Returns the process-wide logger; before `CreateInstance` and after `ReleaseInstance`, one
    /// that discards everything. The reference does not keep the logger alive.
    static ILogger& GetLogger();

    /// Installs `logger` as the process-wide logger, and then releases the old one, whose
    /// destructor may wait. An empty pointer installs a logger that discards everything or, when
    /// out of memory, keeps the old one. Not thread-safe: call it while no other thread logs.
    ///
    /// Installs nothing before `CreateInstance`, which `LibModuleManager::Initialize` calls, and
    /// after `ReleaseInstance`. `logger` is then destroyed unless it is shared.
    static void SetLogger(smart_ptr<ILogger> logger);

    /// Null while there is no process-wide logger.
    static smart_ptr<ILogger>* s_pInstance;

private:
    friend TOOLKIT_API ILogger& BeginLogLine(LogSeverity severity, int line, const char* function);

    bool IsFilteredOut() const { return m_severity.load(std::memory_order_relaxed) > m_threshold; }
    template <typename Convert>
    ILogger& Insert(Convert convert);
    template <typename Number>
    ILogger& WriteNumber(Number value);
    ILogger& WriteView(std::wstring_view text);
    ILogger& WriteView(std::string_view text);

    LogSeverity m_threshold;
    std::atomic<LogSeverity> m_severity; // orders no other memory accesses
};

} // namespace Toolkit
