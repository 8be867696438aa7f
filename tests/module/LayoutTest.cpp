// Modules built at different times share objects and call each other's virtual operations, so
// fields and slots must keep their places. Slots 0 and 1 are the destructor's two variants.

#include "toolkit/config/CmdLineParser.h"
#include "toolkit/config/IniFile.h"
#include "toolkit/core/Bytes.h"
#include "toolkit/core/FSInputSerializer.h"
#include "toolkit/core/FSOutputSerializer.h"
#include "toolkit/datetime/DateTime.h"
#include "toolkit/files/FFile.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/files/TextFile.h"
#include "toolkit/files/TextInputStream.h"
#include "toolkit/ipc/IPCServer.h"
#include "toolkit/logging/ConsoleLogger.h"
#include "toolkit/logging/DebuggerLogger.h"
#include "toolkit/logging/FileLogger.h"
#include "toolkit/logging/NullLogger.h"
#include "toolkit/logging/WxLogForwarder.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/module/ToolkitModule.h"
#include "toolkit/regExp/RegExp.h"
#include "toolkit/system/RestartManagment.h"
#include "toolkit/system/SingleApplicationInstance.h"
#include "toolkit/system/SystemInfo.h"
#include "toolkit/system/Version.h"
#include "toolkit/threading/EventObject.h"
#include "toolkit/threading/Mutex.h"
#include "toolkit/threading/Thread.h"

#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <list>
#include <map>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;

constexpr std::size_t c_pointer = sizeof(void*);

template <typename Value, typename Object>
Value ReadAt(const Object& object, std::size_t offset)
{
    Value value;
    std::memcpy(&value, reinterpret_cast<const unsigned char*>(&object) + offset, sizeof value);
    return value;
}

// Returns the offset of each field in `object`, in bytes.
template <typename Object>
std::vector<std::size_t> OffsetsIn(const Object& object, std::initializer_list<const void*> fields)
{
    std::vector<std::size_t> offsets;
    for (const void* const field : fields)
        offsets.push_back(
            static_cast<std::size_t>(static_cast<const unsigned char*>(field) -
                                     reinterpret_cast<const unsigned char*>(&object)));
    return offsets;
}

// Itanium C++ ABI, section 2.3: a pointer to a virtual member function holds the offset of its slot
// plus 1. On AArch64 it holds the offset itself (C++ ABI for the Arm 64-bit Architecture).
template <typename Member>
std::size_t SlotOf(Member member)
{
    std::size_t parts[2];
    static_assert(sizeof parts == sizeof member);
    std::memcpy(parts, &member, sizeof parts);
#ifdef __aarch64__
    return parts[0] / c_pointer;
#else
    return (parts[0] - 1) / c_pointer;
#endif
}

struct ThreadSlots : Thread {
    static std::size_t OfEntry() { return SlotOf(&ThreadSlots::Entry); }
    static std::size_t OfDoWork() { return SlotOf(&ThreadSlots::DoWork); }
};

struct FileLoggerSlots : FileLogger {
    static std::size_t OfWrite() { return SlotOf(&FileLoggerSlots::Write); }
    static std::size_t OfDoWork() { return SlotOf(&FileLoggerSlots::DoWork); }
};

struct ForwarderSlots : WxLogForwarder {
    static std::size_t OfDoLog() { return SlotOf(&ForwarderSlots::DoLog); }
    static std::size_t OfDoLogString() { return SlotOf(&ForwarderSlots::DoLogString); }
};

// Runs an action while a registry releases its modules.
template <typename Action>
class ReleaseAction : public LibModule {
public:
    explicit ReleaseAction(Action action) : m_action(action) {}
    void Initialize() override {}
    void Release() override { m_action(this); }

private:
    Action m_action;
};

TEST(LayoutTest, PutsTheCountBlockOfASmartPtrAfterItsObject)
{
    int* const object = new int(7);
    const smart_ptr<int> pointer(object);
    const smart_ptr<int> copy(pointer);

    EXPECT_EQ(sizeof pointer, 2 * c_pointer);
    EXPECT_EQ(ReadAt<int*>(pointer, 0), object);
    const auto* const block = ReadAt<const std::int32_t*>(pointer, c_pointer);
    EXPECT_EQ(*block, 2);
    EXPECT_EQ(ReadAt<const std::int32_t*>(copy, c_pointer), block);
}

TEST(LayoutTest, PutsLockPolicyAndListenerAfterTheCount)
{
    using Block = smart_ptr_inner_data<smart_ptr_policy>;
    const Block block;
    const auto offsetOf = [&block](const void* field) {
        return static_cast<std::size_t>(static_cast<const unsigned char*>(field) -
                                        reinterpret_cast<const unsigned char*>(&block));
    };

    EXPECT_EQ(offsetOf(&block.count), 0u);
    EXPECT_EQ(offsetOf(&block.lock), c_pointer);
    EXPECT_EQ(offsetOf(&block.policy), 3 * c_pointer);
    EXPECT_EQ(offsetOf(&block.releaseListener), 4 * c_pointer);
}

TEST(LayoutTest, PutsOnReleasedInTheThirdSlotOfAReleaseListener)
{
    EXPECT_EQ(SlotOf(&IReleaseListener::OnReleased), 2u);
}

TEST(LayoutTest, PutsSerializeBeforeDeserialize)
{
    EXPECT_EQ(SlotOf(&ISerialize::Serialize), 2u);
    EXPECT_EQ(SlotOf(&ISerialize::Deserialize), 3u);
    EXPECT_EQ(SlotOf(&Bytes::Serialize), 2u);
    EXPECT_EQ(SlotOf(&Bytes::Deserialize), 3u);
}

TEST(LayoutTest, PutsTheSizeOfABufferAfterItsBytes)
{
    const unsigned char contents[] = {1, 2, 3};
    const Bytes bytes(contents, 3);

    EXPECT_EQ(*ReadAt<const unsigned char*>(bytes, c_pointer), 1);
    EXPECT_EQ(ReadAt<std::uint32_t>(bytes, 2 * c_pointer), 3u);
    EXPECT_EQ(ReadAt<const unsigned char*>(Bytes(), c_pointer), nullptr);
    EXPECT_EQ(sizeof bytes, 3 * c_pointer);
}

template <typename Stream>
std::vector<std::size_t> StreamSlots()
{
    using WriteString = unsigned int (Stream::*)(const TString<wchar_t>&);
    using WriteNumber = unsigned int (Stream::*)(unsigned int);
    using WriteBlock = unsigned int (Stream::*)(const void*, unsigned int);
    using ReadString = unsigned int (Stream::*)(TString<wchar_t>&);
    using ReadNumber = unsigned int (Stream::*)(unsigned int&);
    using ReadBlock = unsigned int (Stream::*)(void*, unsigned int);

    return {SlotOf<WriteString>(&Stream::Write),
            SlotOf<WriteNumber>(&Stream::Write),
            SlotOf<WriteBlock>(&Stream::Write),
            SlotOf<ReadString>(&Stream::Read),
            SlotOf<ReadNumber>(&Stream::Read),
            SlotOf<ReadBlock>(&Stream::Read),
            SlotOf(&Stream::Length)};
}

TEST(LayoutTest, PutsTheSlotsOfAStreamInOrder)
{
    const std::vector<std::size_t> expected = {2, 3, 4, 5, 6, 7, 8};

    EXPECT_EQ(StreamSlots<IStream>(), expected);
    EXPECT_EQ(StreamSlots<FSStream>(), expected);
    EXPECT_EQ(sizeof(FSStream), 2 * c_pointer);
}

TEST(LayoutTest, PutsTheStreamOfASerializerFirst)
{
    const FSInputSerializer input(L"");
    const auto* const stream = static_cast<FSStream*>(&input.GetStream());

    EXPECT_EQ(SlotOf(&Serializer::GetStream), 2u);
    EXPECT_EQ(SlotOf(&FSSerializer::GetStream), 2u);
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(stream),
              reinterpret_cast<const unsigned char*>(&input) + c_pointer);
    EXPECT_EQ(sizeof(FSSerializer), c_pointer + sizeof(FSStream));
    EXPECT_EQ(sizeof(FSInputSerializer), sizeof(FSSerializer));
    EXPECT_EQ(sizeof(FSOutputSerializer), sizeof(FSSerializer));
}

TEST(LayoutTest, PutsTheFlagsOfAnOptionAfterItsStrings)
{
    constexpr std::size_t stringSize = sizeof(TString<wchar_t>);
    const auto flags = [](const CmdLineOption& option) {
        return std::pair(ReadAt<std::int32_t>(option, c_pointer + 2 * stringSize),
                         ReadAt<std::int32_t>(option, c_pointer + 2 * stringSize + 4));
    };
    const CmdLineOption required(L"a", true);
    CmdLineOption defined(L"b", false);
    defined.SetDefined();

    const auto* const object = reinterpret_cast<const unsigned char*>(&defined);
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(&defined.GetName()), object + c_pointer);
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(&defined.GetValue()),
              object + c_pointer + stringSize);
    EXPECT_EQ(flags(required), std::pair(0, 1));
    EXPECT_EQ(flags(defined), std::pair(1, 0));
}

TEST(LayoutTest, PutsTheTokensOfAParserAfterItsOptions)
{
    using Token = TString<wchar_t>;
    const CmdLineParser parser(Token(L"one two three"));

    const auto tokens = ReadAt<std::array<const Token*, 2>>(parser, sizeof(std::map<int, int>));
    EXPECT_EQ(tokens[1] - tokens[0], 3);
    EXPECT_EQ(*tokens[0], L"one");
    EXPECT_EQ(sizeof parser, sizeof(std::map<int, int>) + sizeof(std::vector<Token>));
}

TEST(LayoutTest, PutsTheLoadedFlagOfAnIniFileAfterItsSections)
{
    const IniFile empty(L"/dev/null/none");

    EXPECT_EQ(sizeof(IniFile), 3 * c_pointer);
    EXPECT_EQ(ReadAt<std::uint8_t>(empty, 2 * c_pointer), 0);
}

TEST(LayoutTest, KeepsOnePointerInAMutex)
{
    EXPECT_EQ(sizeof(MutexInternal), 2 * c_pointer);
    EXPECT_EQ(sizeof(Mutex), sizeof(MutexInternal));
}

TEST(LayoutTest, PutsTheResultOfALockerAfterItsMutex)
{
    Mutex mutex(false);
    const MutexLocker locker(mutex, MutexInternal::Infinite);

    EXPECT_EQ(ReadAt<MutexInternal*>(locker, 0), &mutex);
    EXPECT_TRUE(ReadAt<bool>(locker, c_pointer));
}

TEST(LayoutTest, PutsDoWorkOfAThreadAfterEntry)
{
    EXPECT_GT(ThreadSlots::OfEntry(), 1u);
    EXPECT_GT(ThreadSlots::OfDoWork(), ThreadSlots::OfEntry());
}

TEST(LayoutTest, PutsStateModeAndLockOfAnEventInOrder)
{
    EventObject automatic(true, false);
    EventObject manual(false, true);

    EXPECT_EQ(ReadAt<std::uint8_t>(automatic, 0), 0);
    EXPECT_EQ(ReadAt<std::uint8_t>(automatic, 1), 1);
    EXPECT_EQ(ReadAt<std::uint8_t>(manual, 0), 1);
    EXPECT_EQ(ReadAt<std::uint8_t>(manual, 1), 0);
    EXPECT_EQ(sizeof manual, c_pointer + sizeof(Mutex));
}

TEST(LayoutTest, PutsTheSeverityOfALoggerAfterItsThreshold)
{
    const ConsoleLogger logger(SeverityWarning);

    EXPECT_EQ(ReadAt<std::int32_t>(logger, c_pointer), 1);
    EXPECT_EQ(ReadAt<std::int32_t>(logger, c_pointer + 4), 4);
    EXPECT_EQ(sizeof(ILogger), c_pointer + 8);
    EXPECT_EQ(ReadAt<std::int32_t>(NullLogger(), c_pointer), 0);
}

TEST(LayoutTest, AddsNoFieldsToTheSimpleLoggers)
{
    EXPECT_EQ(sizeof(ConsoleLogger), sizeof(ILogger));
    EXPECT_EQ(sizeof(DebuggerLogger), sizeof(ILogger));
    EXPECT_EQ(sizeof(NullLogger), sizeof(ILogger));
    EXPECT_EQ(sizeof(SetSeverity), 4u);
}

TEST(LayoutTest, PutsWriteInTheThirdSlotOfALogger)
{
    EXPECT_EQ(SlotOf(&ILogger::Write), 2u);
}

TEST(LayoutTest, PutsDoWorkOfAFileLoggerAfterWrite)
{
    EXPECT_EQ(FileLoggerSlots::OfWrite(), 2u);
    EXPECT_EQ(FileLoggerSlots::OfDoWork(), 3u);
}

TEST(LayoutTest, PutsILoggerBeforeThreadInAFileLogger)
{
    // No FileLogger is constructed: only the addresses of its bases are compared.
    alignas(FileLogger) unsigned char storage[sizeof(FileLogger)];
    auto* const logger = reinterpret_cast<FileLogger*>(storage);
    const auto offsetOf = [&storage](void* base) {
        return static_cast<std::size_t>(static_cast<unsigned char*>(base) - storage);
    };

    EXPECT_EQ(offsetOf(static_cast<ILogger*>(logger)), 0u);
    EXPECT_GE(offsetOf(static_cast<Thread*>(logger)), sizeof(ILogger));
}

TEST(LayoutTest, PutsDoLogStringOfAForwarderAfterDoLog)
{
    EXPECT_EQ(ForwarderSlots::OfDoLogString(), ForwarderSlots::OfDoLog() + 1);
    EXPECT_EQ(sizeof(WxLogForwarder), sizeof(wxLog));
}

TEST(LayoutTest, KeepsOnePointerInAFile)
{
    EXPECT_EQ(sizeof(FFile), c_pointer);
    EXPECT_EQ(sizeof(TextFile), c_pointer);
}

TEST(LayoutTest, KeepsOnePointerInAStream)
{
    EXPECT_EQ(sizeof(InputStream), 2 * c_pointer);
    EXPECT_EQ(sizeof(TextInputStream), sizeof(InputStream));
}

TEST(LayoutTest, KeepsTheStringsOfAPathManagerInOrder)
{
    constexpr std::size_t stringSize = sizeof(TString<wchar_t>);
    const TestSupport::TempDir directory;
    const TestSupport::ScopedEnvironment home("HOME", directory.Path());
    const PathManager paths;

    EXPECT_EQ(sizeof paths, 11 * stringSize);
    EXPECT_THAT(
        OffsetsIn(paths,
                  {&paths.GetApplicationName(), &paths.GetConfigurationPath(),
                   &paths.GetApplicationDataPath(), &paths.GetApplicationPath(),
                   &paths.GetApplicationRessourcesPath(), &paths.GetAppearancesPath(),
                   &paths.GetPluginsPath(), &paths.GetDocumentsPath(), &paths.GetPathSeparator(),
                   &paths.GetMassStorageDataPath(), &paths.GetApplicationUniqueName()}),
        ElementsAre(0u, stringSize, 2 * stringSize, 3 * stringSize, 4 * stringSize, 5 * stringSize,
                    6 * stringSize, 7 * stringSize, 8 * stringSize, 9 * stringSize,
                    10 * stringSize));
}

TEST(LayoutTest, PutsOnExecuteInTheThirdSlotOfAnIpcListener)
{
    EXPECT_EQ(SlotOf(&IPCConnectionEvent::OnExecute), 2u);
    EXPECT_EQ(sizeof(IPCConnectionEvent), c_pointer);
}

TEST(LayoutTest, PutsTheNameOfAnIpcServerAfterItsInternalServer)
{
    constexpr std::size_t baseSize = sizeof(EventNotifier<IPCConnectionEvent>);
    const IPCServer server(L"name");

    EXPECT_EQ(sizeof server, baseSize + c_pointer + sizeof(TString<wchar_t>));
    EXPECT_NE(ReadAt<void*>(server, baseSize), nullptr);
    // A string begins with the address of its characters.
    EXPECT_STREQ(ReadAt<const wchar_t*>(server, baseSize + c_pointer), L"name");
}

TEST(LayoutTest, PutsTheModifiersOfARegExpAfterItsPattern)
{
    const RegExp regExp(TString<char>("pattern"), RegExpOptions::MultiLine);

    EXPECT_STREQ(ReadAt<const char*>(regExp, 0), "pattern");
    EXPECT_EQ(ReadAt<std::int32_t>(regExp, sizeof(TString<char>)), 2);
}

TEST(LayoutTest, KeepsFourStringsInARegExpException)
{
    constexpr std::size_t stringSize = sizeof(TString<char>);
    const RegExpException exception;

    EXPECT_EQ(sizeof exception, c_pointer + 4 * stringSize);
    EXPECT_THAT(OffsetsIn(exception, {&exception.message, &exception.file, &exception.line,
                                      &exception.function}),
                ElementsAre(c_pointer, c_pointer + stringSize, c_pointer + 2 * stringSize,
                            c_pointer + 3 * stringSize));
}

TEST(LayoutTest, PutsNameValueAndIndexOfAGroupInOrder)
{
    constexpr std::size_t stringSize = sizeof(TString<char>);
    const Group group("value", 1);

    EXPECT_THAT(OffsetsIn(group, {&group.name, &group.value, &group.index}),
                ElementsAre(0u, stringSize, 2 * stringSize));
    EXPECT_EQ(sizeof group.index, 2u);
}

TEST(LayoutTest, PutsTheFieldsOfAMatchResultAfterItsGroups)
{
    constexpr std::size_t baseSize = sizeof(GroupCollection);
    constexpr std::size_t subjectOffset = baseSize + 3 * c_pointer;
    constexpr std::size_t optionsOffset = subjectOffset + 2 * sizeof(TString<char>);
    const MatchResult result;

    EXPECT_THAT(
        OffsetsIn(result, {&result.groups, &result.names, &result.errorText, &result.errorOffset,
                           &result.code, &result.subject, &result.pattern, &result.execOptions,
                           &result.resultCode, &result.ovectorSize, &result.ovector}),
        ElementsAre(0u, sizeof result.groups, baseSize, baseSize + c_pointer,
                    baseSize + 2 * c_pointer, subjectOffset, subjectOffset + sizeof(TString<char>),
                    optionsOffset, optionsOffset + 4, optionsOffset + 8, optionsOffset + 12));
}

TEST(LayoutTest, KeepsOnePointerInADate)
{
    EXPECT_EQ(sizeof(DateTime), c_pointer);
}

TEST(LayoutTest, KeepsThePartsOfAVersionInOrder)
{
    const Version version(1, 2, 3, 4);

    EXPECT_EQ(sizeof version, 16u);
    for (unsigned int part = 0; part < 4; ++part)
        EXPECT_EQ(ReadAt<std::uint32_t>(version, part * 4), part + 1);
}

TEST(LayoutTest, KeepsOnePointerInSystemInfo)
{
    EXPECT_EQ(sizeof(SystemInfo), c_pointer);
}

TEST(LayoutTest, KeepsTheUnusedFieldOfRestartManagmentAtZero)
{
    EXPECT_EQ(sizeof(RestartManagment), 2 * c_pointer);
    EXPECT_EQ(ReadAt<std::int32_t>(RestartManagment(), c_pointer), 0);
}

TEST(LayoutTest, PutsReleaseOfAModuleAfterInitialize)
{
    EXPECT_EQ(SlotOf(&LibModule::Initialize), 2u);
    EXPECT_EQ(SlotOf(&LibModule::Release), 3u);
    EXPECT_EQ(SlotOf(&ToolkitModule::Initialize), 2u);
    EXPECT_EQ(SlotOf(&ToolkitModule::Release), 3u);
    EXPECT_EQ(sizeof(ToolkitModule), c_pointer);
}

TEST(LayoutTest, PutsTheFieldsOfALibModuleManagerInOrder)
{
    constexpr std::size_t initializedOffset = sizeof(std::list<int>) + sizeof(Mutex);
    constexpr std::size_t releasingOffset = initializedOffset + 4;
    constexpr std::size_t removalsOffset = releasingOffset + 4;
    LibModuleManager manager;
    int releases = 0;
    ReleaseAction module([&](LibModule* self) {
        ++releases;
        EXPECT_EQ(ReadAt<std::int32_t>(manager, releasingOffset), 1);
        manager.Unregister(self);
        // The last field of a list is its length.
        EXPECT_EQ(ReadAt<std::size_t>(manager, removalsOffset + 2 * c_pointer), 1u);
    });
    manager.Register(&module);
    manager.Initialize(false);
    EXPECT_EQ(ReadAt<std::size_t>(manager, 2 * c_pointer), 1u);
    EXPECT_EQ(ReadAt<std::int32_t>(manager, initializedOffset), 1);

    manager.Release(false);

    EXPECT_EQ(releases, 1);
    EXPECT_EQ(ReadAt<std::size_t>(manager, 2 * c_pointer), 0u);
    EXPECT_EQ(ReadAt<std::int32_t>(manager, initializedOffset), 0);
    EXPECT_EQ(ReadAt<std::int32_t>(manager, releasingOffset), 0);
}

TEST(LayoutTest, PutsTheCountOfARegistryEntryAfterItsModule)
{
    LibModuleManager manager;
    ToolkitModule module;
    manager.Register(&module);
    manager.Register(&module);
    manager.Register(&module);

    // A list begins with the link to its first node, whose value follows two links.
    const auto* const node = ReadAt<const unsigned char*>(manager, 0);
    EXPECT_EQ(ReadAt<LibModule*>(*node, 2 * c_pointer), &module);
    EXPECT_EQ(ReadAt<std::int32_t>(*node, 3 * c_pointer), 3);
}

} // namespace
} // namespace Toolkit
