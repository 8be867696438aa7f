#include "toolkit/Toolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <string>
#include <typeinfo>
#include <vector>

namespace {

using namespace Toolkit;
using testing::Each;
using testing::ElementsAre;
using testing::StartsWith;

// Returns mangled names. The name of a type in a namespace begins with "N"; the length of each
// part of the name precedes it.
template <typename... Types>
std::vector<std::string> GetTypeNames()
{
    return {typeid(Types).name()...};
}

TEST(InterfaceTest, KeepsCoreThreadingAndEncodingInTheNamespace)
{
    const std::vector<std::string> names =
        GetTypeNames<smart_ptr<int>, smart_ptr_policy, smart_ptr_array_policy, Bytes, ISerialize,
                     IStream, FSStream, Serializer, FSSerializer, FSInputSerializer,
                     FSOutputSerializer, MutexInternal, Mutex, MutexLocker, Thread, EventObject,
                     EventNotifier<int>, BackgroundOperation, BackgroundOperationHandler, UTF7,
                     UTF8, StringConvert, B64, QP>();

    EXPECT_THAT(names, Each(StartsWith("N7Toolkit")));
}

TEST(InterfaceTest, KeepsLoggingConfigFilesAndSystemInTheNamespace)
{
    const std::vector<std::string> names =
        GetTypeNames<ILogger, LogSeverity, SetSeverity, ConsoleLogger, DebuggerLogger, NullLogger,
                     FileLogger, WxLogForwarder, CmdLineOption, CmdLineParser, IniFile, FFile,
                     TextFile, InputStream, TextInputStream, PathManager, Directory, DynamicLibrary,
                     SystemInfo, Version, RestartManagment, SingleApplicationInstance, Locales,
                     Network>();

    EXPECT_THAT(names, Each(StartsWith("N7Toolkit")));
}

TEST(InterfaceTest, KeepsAllOtherFoldersInTheNamespace)
{
    const std::vector<std::string> names =
        GetTypeNames<LibModule, LibModuleManager, ToolkitModule, IPCServer, IPCClient,
                     IPCConnectionEvent, RegExp, RegExpOptions, RegExpException, MatchResult, Group,
                     GroupCollection, DateTime, ArchiveZip, ArchiveZipEntry, ArchiveEntriesFlags,
                     ZipInputStream>();

    EXPECT_THAT(names, Each(StartsWith("N7Toolkit")));
}

TEST(InterfaceTest, KeepsTStringAndMacAutoreleasePoolAtGlobalScope)
{
    const std::vector<std::string> names =
        GetTypeNames<TString<char>, TString<wchar_t>, MacAutoreleasePool>();

    EXPECT_THAT(names, ElementsAre("7TStringIcE", "7TStringIwE", "18MacAutoreleasePool"));
}

// A mangled name contains scope and parameter types. A function with C linkage has a plain name.
TEST(InterfaceTest, KeepsScopeParametersAndLinkageOfFunctions)
{
    constexpr const char* names[] = {"_Z6ASSERTb",
                                     "_Z12MacInitCocoav",
                                     "_Z13GetCodeLengthi",
                                     "_Z13GetDataLengthi",
                                     "_Z17b64_decode_binaryPKhjPPhPj",
                                     "_Z17b64_encode_binaryPKhjPPhPj",
                                     "_ZN7Toolkit12GetTickCountEv",
                                     "DllToolkitLoad",
                                     "DllToolkitUnload"};
    for (const char* name : names)
        EXPECT_NE(::dlsym(RTLD_DEFAULT, name), nullptr) << name;
}

} // namespace
