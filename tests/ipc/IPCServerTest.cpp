#include "toolkit/ipc/IPCServer.h"

#include "toolkit/ipc/IPCClient.h"

#include "support/Sanitizers.h"
#include "support/ScopedLocale.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstddef>
#include <ctime>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "ipc/ChildProgram.h"
#include "ipc/ServerFixture.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using TestSupport::c_connect;
using TestSupport::c_executeA;
using TestSupport::ChildProgram;
using TestSupport::CreateListener;
using TestSupport::RawSocket;
using TestSupport::ScopedLocale;
using TestSupport::ServeWhile;
using namespace std::string_literals;

// Length of the longest message. Smaller under ThreadSanitizer, where a server on a busy machine
// may take longer to receive the full length than a client waits.
#ifdef TOOLKIT_THREAD_SANITIZER
constexpr std::size_t c_maxCharacters = std::size_t{1} << 20;
#else
constexpr std::size_t c_maxCharacters = std::size_t{16} << 20;
#endif

using IPCServerTest = TestSupport::ServerFixture;

TEST_F(IPCServerTest, DeliversAMessageToItsListener)
{
    const auto server = RunServer();

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), L"-open file.txt"));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"-open file.txt"));
    });
}

TEST_F(IPCServerTest, DeliversMessagesUnchangedInAnyLocale)
{
    const std::vector<std::wstring> messages = {L"",
                                                L"a",
                                                L"two\nlines",
                                                L"\u00E9\u0394\u0416",
                                                L"\u6F22\uFFFF",
                                                L"\U0001F600",
                                                L"\U000E0001\U0010FFFF",
                                                std::wstring(65536, L'\u6F22'),
                                                std::wstring(1, static_cast<wchar_t>(0xDFFF))};
    const auto server = RunServer();
    for (const char* locale : {"C", "C.utf8"}) {
        const ScopedLocale scoped(locale);
        ServeWhile([&] {
            const std::size_t before = m_received.All().size();
            for (const std::wstring& message : messages)
                EXPECT_TRUE(IPCClient::Connect(Service(), message));
            const std::vector<std::wstring> all = m_received.Await(before + messages.size());
            EXPECT_EQ(std::vector(all.begin() + static_cast<long>(before), all.end()), messages);
        });
    }
}

TEST_F(IPCServerTest, DeliversTheLongestMessage)
{
    const std::wstring longest(c_maxCharacters, L'x');
    const std::wstring ofFourByteCharacters(c_maxCharacters / 4, L'\U0001F600');
    const auto server = RunServer();

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), longest));
        EXPECT_TRUE(IPCClient::Connect(Service(), ofFourByteCharacters));
        const std::vector<std::wstring> received = m_received.Await(2);
        EXPECT_TRUE(received == (std::vector{longest, ofFourByteCharacters}));
    });
}

TEST_F(IPCServerTest, DeliversMessagesInTheOrderOfSending)
{
    std::vector<std::wstring> messages;
    for (wchar_t number = L'0'; number <= L'9'; ++number) {
        messages.emplace_back(std::size_t{1} << 20, number);
        messages.emplace_back(1, number);
    }
    const auto server = RunServer();

    ServeWhile([&] {
        for (const std::wstring& message : messages)
            EXPECT_TRUE(IPCClient::Connect(Service(), message));
        EXPECT_TRUE(m_received.Await(messages.size()) == messages);
    });
}

TEST_F(IPCServerTest, CallsTwoListenersInOrder)
{
    IPCServer server(Service());
    server.AddListener(
        CreateListener([&](const auto& message) { m_received.Add(L"1" + message); }));
    server.AddListener(
        CreateListener([&](const auto& message) { m_received.Add(L"2" + message); }));
    ASSERT_TRUE(server.Run());

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), L"a"));
        m_received.Await(2);
        EXPECT_TRUE(IPCClient::Connect(Service(), L"b"));
        EXPECT_THAT(m_received.Await(4), ElementsAre(L"1a", L"2a", L"1b", L"2b"));
    });
}

TEST_F(IPCServerTest, AcceptsAMessageWithoutListeners)
{
    IPCServer server(Service());
    ASSERT_TRUE(server.Run());

    ServeWhile([&] { EXPECT_TRUE(IPCClient::Connect(Service(), L"text")); });
}

TEST_F(IPCServerTest, DeliversALocalMessageWithoutRun)
{
    const auto server = CreateServer();

    server->SendExecuteEvent(L"local");

    EXPECT_THAT(m_received.All(), ElementsAre(L"local"));
    EXPECT_FALSE(std::filesystem::exists(Path()));
    EXPECT_FALSE(IPCClient::Connect(Service(), L"text"));
}

TEST_F(IPCServerTest, LetsAListenerRemoveItselfAndSendAMessage)
{
    const auto server = RunServer();
    smart_ptr<IPCConnectionEvent> listener;
    listener = CreateListener([&](const auto& message) {
        EXPECT_TRUE(server->RemoveListener(listener));
        server->SendExecuteEvent(L"again " + message);
    });
    server->AddListener(listener);

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), L"a"));
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"a", L"again a"));
    });
}

// The session whose message is being handled waits while the others continue.
TEST_F(IPCServerTest, ServesOtherClientsWhileAListenerRunsALoop)
{
    const auto server = RunServer();
    server->AddListener(CreateListener([&](const auto& message) {
        if (message == L"a")
            ServeWhile([&] { EXPECT_TRUE(ServerDelivers()); });
    }));

    ServeWhile([&] {
        const RawSocket client = ConnectWithTopic();
        EXPECT_TRUE(client.Send(c_executeA));
        m_received.Await(1);
        EXPECT_TRUE(client.Send("\x01\x01\x08\0\0\0b\0\0\0\0\0\0\0"s));
        EXPECT_THAT(m_received.Await(3), ElementsAre(L"a", L"served", L"b"));
    });
}

// Data that waits until the listener returns must not keep the inner loop awake.
TEST_F(IPCServerTest, DoesNotSpinWhileAListenerRunsALoop)
{
    const auto server = RunServer();
    std::clock_t used = 0;
    server->AddListener(CreateListener([&](const auto& message) {
        if (message != L"a")
            return;
        const std::clock_t start = std::clock();
        ServeWhile([] { std::this_thread::sleep_for(std::chrono::seconds(1)); });
        used = std::clock() - start;
    }));

    ServeWhile([&] {
        const RawSocket client = ConnectWithTopic();
        EXPECT_TRUE(client.Send(c_executeA));
        m_received.Await(1);
        EXPECT_TRUE(client.Send("\x01\x01\x08\0\0\0b\0\0\0\0\0\0\0"s));
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"a", L"b"));
    });
    EXPECT_LT(used, CLOCKS_PER_SEC / 2);
}

TEST_F(IPCServerTest, SurvivesAnExceptionFromAListener)
{
    const auto server = RunServer();
    const auto thrower =
        CreateListener([](const auto&) { throw std::runtime_error("thrown by the listener"); });
    server->AddListener(thrower);

    std::thread client([this] { EXPECT_TRUE(IPCClient::Connect(Service(), L"text")); });
    EXPECT_THROW(wxConsoleEventLoop().Run(), std::runtime_error);
    client.join();
    server->RemoveListener(thrower);

    ServeWhile([&] { EXPECT_TRUE(ServerDelivers()); });
    EXPECT_THAT(m_received.All(), ElementsAre(L"text", L"served"));
}

TEST_F(IPCServerTest, SpeaksTheWxWidgetsProtocol)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = RawSocket::ConnectedTo(Path());
        EXPECT_TRUE(
            client.Send("\x0A\x03\0\0\0h\xC3\xA9\x01\x01\x0C\0\0\0h\0\0\0\xE9\0\0\0\0\0\0\0\x0B"s));
        EXPECT_EQ(client.ReceiveAll(), "\x0A");
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"h\u00E9"));
    });
}

TEST_F(IPCServerTest, AcceptsSeveralMessagesOnOneConnection)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = ConnectWithTopic();
        EXPECT_TRUE(client.Send(c_executeA + c_executeA));
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"a", L"a"));
        EXPECT_TRUE(client.Send(c_executeA));
        EXPECT_THAT(m_received.Await(3), ElementsAre(L"a", L"a", L"a"));
    });
}

TEST_F(IPCServerTest, DecodesAMessageByItsFormat)
{
    // A struct, because Clang 14 cannot capture structured bindings in a lambda.
    const struct {
        std::string bytes;
        std::wstring message;
    } cases[] = {
        {"\x01\x11\x03\0\0\0\xC3\xA9\0"s, L"\u00E9"},                // wxIPC_UTF8TEXT (17)
        {"\x01\x11\x02\0\0\0\xC3\xA9"s, L"\u00E9"},                  // without a null character
        {"\x01\x12\x08\0\0\0\xE9\0\0\0\0\0\0\0"s, L"\u00E9"},        // wxIPC_UTF32TEXT (18)
        {"\x01\x0D\x08\0\0\0\xE9\0\0\0\0\0\0\0"s, L"\u00E9"},        // any other: also UTF-32
        {"\x01\xFF\x07\0\0\0\xE9\0\0\0\xE9\0\0"s, L"\u00E9"},        // incomplete second character
        {"\x01\x01\x10\0\0\0a\0\0\0\0\0\0\0b\0\0\0\0\0\0\0"s, L"a"}, // ends at a null character
        {"\x01\x01\0\0\0\0"s, L""}};
    const auto server = RunServer();
    for (const auto& expected : cases) {
        SCOPED_TRACE(testing::PrintToString(expected.bytes));
        const std::size_t before = m_received.All().size();
        ServeWhile([&] {
            EXPECT_TRUE(ConnectWithTopic().Send(expected.bytes));
            EXPECT_EQ(m_received.Await(before + 1).back(), expected.message);
        });
    }
}

TEST_F(IPCServerTest, DropsInvalidUtf8)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = ConnectWithTopic();
        EXPECT_TRUE(client.Send("\x01\x11\x03\0\0\0\xE0\x80\0"s + c_executeA));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"a"));
    });
}

TEST_F(IPCServerTest, ServesClientsFromALoopOnAnotherThread)
{
    std::thread thread([this] {
        const auto server = RunServer();
        ServeWhile([this] {
            EXPECT_TRUE(RawSocket::ConnectedTo(Path()).IsClosedByPeer());
            EXPECT_TRUE(ServerDelivers());
        });
    });
    thread.join();
}

TEST_F(IPCServerTest, DisconnectsItsClientsWhenDestroyed)
{
    auto server = RunServer();
    std::vector<RawSocket> clients;
    ServeWhile([&] {
        clients.push_back(RawSocket::ConnectedTo(Path()));
        clients.push_back(ConnectWithTopic());
        EXPECT_TRUE(clients.back().Send(c_executeA.substr(0, 9)));
        EXPECT_TRUE(ServerDelivers());
    });

    server.reset();

    for (const RawSocket& client : clients)
        EXPECT_TRUE(client.IsClosedByPeer());
}

TEST_F(IPCServerTest, ServesAClientThatUsesOnlyWxWidgets)
{
    const auto server = RunServer();

    ServeWhile([&] {
        ChildProgram client(TOOLKIT_TEST_BARE_CLIENT, {Path(), "h\xC3\xA9 \xF0\x9F\x98\x80"});
        EXPECT_EQ(client.WaitForExitCode(), 0);
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"h\u00E9 \U0001F600", L"h\u00E9 \U0001F600"));
    });
}

} // namespace
} // namespace Toolkit
