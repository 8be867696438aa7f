#include "toolkit/ipc/IPCServer.h"

#include "toolkit/ipc/IPCClient.h"

#include "support/Sanitizers.h"
#include "support/ScopedLocale.h"

#include <gmock/gmock.h>

#include <ctime>
#include <stdexcept>

#include "ipc/ChildProgram.h"
#include "ipc/ServerFixture.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using TestSupport::c_connect;
using TestSupport::c_executeA;
using TestSupport::ChildProgram;
using TestSupport::MakeListener;
using TestSupport::RawSocket;
using TestSupport::ScopedLocale;
using TestSupport::ServeWhile;
using namespace std::string_literals;

// Length of the longest message. Smaller under ThreadSanitizer, where a server on a busy machine
// may take longer to receive the full length than a client waits.
#ifdef TOOLKIT_THREAD_SANITIZER
constexpr std::size_t c_mostCharacters = std::size_t{1} << 20;
#else
constexpr std::size_t c_mostCharacters = std::size_t{16} << 20;
#endif

using IPCServerTest = TestSupport::ServerFixture;

TEST_F(IPCServerTest, HandsATextToItsListener)
{
    const auto server = RunServer();

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), L"-open file.txt"));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"-open file.txt"));
    });
}

TEST_F(IPCServerTest, HandsOnEveryTextInEveryLocale)
{
    const std::vector<std::wstring> texts = {L"",
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
            for (const std::wstring& text : texts)
                EXPECT_TRUE(IPCClient::Connect(Service(), text));
            const std::vector<std::wstring> all = m_received.Await(before + texts.size());
            EXPECT_EQ(std::vector(all.begin() + static_cast<long>(before), all.end()), texts);
        });
    }
}

TEST_F(IPCServerTest, HandsOnTheLongestText)
{
    const std::wstring longest(c_mostCharacters, L'x');
    const std::wstring ofFourBytes(c_mostCharacters / 4, L'\U0001F600');
    const auto server = RunServer();

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), longest));
        EXPECT_TRUE(IPCClient::Connect(Service(), ofFourBytes));
        const std::vector<std::wstring> received = m_received.Await(2);
        EXPECT_TRUE(received == (std::vector{longest, ofFourBytes}));
    });
}

TEST_F(IPCServerTest, HandsOnTextsInTheOrderOfSending)
{
    std::vector<std::wstring> texts;
    for (wchar_t number = L'0'; number <= L'9'; ++number) {
        texts.emplace_back(std::size_t{1} << 20, number);
        texts.emplace_back(1, number);
    }
    const auto server = RunServer();

    ServeWhile([&] {
        for (const std::wstring& text : texts)
            EXPECT_TRUE(IPCClient::Connect(Service(), text));
        EXPECT_TRUE(m_received.Await(texts.size()) == texts);
    });
}

TEST_F(IPCServerTest, CallsTwoListenersInOrder)
{
    IPCServer server(Service());
    server.AddListener(MakeListener([&](const auto& text) { m_received.Add(L"1" + text); }));
    server.AddListener(MakeListener([&](const auto& text) { m_received.Add(L"2" + text); }));
    ASSERT_TRUE(server.Run());

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), L"a"));
        m_received.Await(2);
        EXPECT_TRUE(IPCClient::Connect(Service(), L"b"));
        EXPECT_THAT(m_received.Await(4), ElementsAre(L"1a", L"2a", L"1b", L"2b"));
    });
}

TEST_F(IPCServerTest, DropsTextsWithoutListeners)
{
    IPCServer server(Service());
    ASSERT_TRUE(server.Run());

    ServeWhile([&] { EXPECT_TRUE(IPCClient::Connect(Service(), L"text")); });
}

TEST_F(IPCServerTest, HandsOnALocalTextWithoutRun)
{
    const auto server = MakeServer();

    server->SendExecuteEvent(L"local");

    EXPECT_THAT(m_received.All(), ElementsAre(L"local"));
    EXPECT_FALSE(std::filesystem::exists(Path()));
    EXPECT_FALSE(IPCClient::Connect(Service(), L"text"));
}

TEST_F(IPCServerTest, LetsAListenerSendAndRemoveItself)
{
    const auto server = RunServer();
    smart_ptr<IPCConnectionEvent> listener;
    listener = MakeListener([&](const auto& text) {
        EXPECT_TRUE(server->RemoveListener(listener));
        server->SendExecuteEvent(L"again " + text);
    });
    server->AddListener(listener);

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), L"a"));
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"a", L"again a"));
    });
}

// The session whose message is being handled waits while the others continue.
TEST_F(IPCServerTest, ServesTheOtherClientsInALoopInsideAListener)
{
    const auto server = RunServer();
    server->AddListener(MakeListener([&](const auto& text) {
        if (text == L"a")
            ServeWhile([&] { EXPECT_TRUE(IsServed()); });
    }));

    ServeWhile([&] {
        const RawSocket client = Introduced();
        EXPECT_TRUE(client.Send(c_executeA));
        m_received.Await(1);
        EXPECT_TRUE(client.Send("\x01\x01\x08\0\0\0b\0\0\0\0\0\0\0"s));
        EXPECT_THAT(m_received.Await(3), ElementsAre(L"a", L"served", L"b"));
    });
}

// Data that waits until the listener returns must not keep the inner loop awake.
TEST_F(IPCServerTest, RestsInALoopInsideAListener)
{
    const auto server = RunServer();
    std::clock_t used = 0;
    server->AddListener(MakeListener([&](const auto& text) {
        if (text != L"a")
            return;
        const std::clock_t start = std::clock();
        ServeWhile([] { std::this_thread::sleep_for(std::chrono::seconds(1)); });
        used = std::clock() - start;
    }));

    ServeWhile([&] {
        const RawSocket client = Introduced();
        EXPECT_TRUE(client.Send(c_executeA));
        m_received.Await(1);
        EXPECT_TRUE(client.Send("\x01\x01\x08\0\0\0b\0\0\0\0\0\0\0"s));
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"a", L"b"));
    });
    EXPECT_LT(used, CLOCKS_PER_SEC / 2);
}

TEST_F(IPCServerTest, SurvivesWhatAListenerThrows)
{
    const auto server = RunServer();
    const auto thrower =
        MakeListener([](const auto&) { throw std::runtime_error("thrown by the listener"); });
    server->AddListener(thrower);

    std::thread client([this] { EXPECT_TRUE(IPCClient::Connect(Service(), L"text")); });
    EXPECT_THROW(wxConsoleEventLoop().Run(), std::runtime_error);
    client.join();
    server->RemoveListener(thrower);

    ServeWhile([&] { EXPECT_TRUE(IsServed()); });
    EXPECT_THAT(m_received.All(), ElementsAre(L"text", L"served"));
}

TEST_F(IPCServerTest, SpeaksTheBytesOfWxWidgets)
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

TEST_F(IPCServerTest, TakesSeveralTextsOnOneConnection)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = Introduced();
        EXPECT_TRUE(client.Send(c_executeA + c_executeA));
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"a", L"a"));
        EXPECT_TRUE(client.Send(c_executeA));
        EXPECT_THAT(m_received.Await(3), ElementsAre(L"a", L"a", L"a"));
    });
}

TEST_F(IPCServerTest, ReadsUtf8OrWideCharactersByTheFormat)
{
    // A struct, because Clang 14 cannot capture structured bindings in a lambda.
    const struct {
        std::string bytes;
        std::wstring text;
    } cases[] = {
        {"\x01\x11\x03\0\0\0\xC3\xA9\0"s, L"\u00E9"},                // 17: UTF-8
        {"\x01\x11\x02\0\0\0\xC3\xA9"s, L"\u00E9"},                  // without a null character
        {"\x01\x12\x08\0\0\0\xE9\0\0\0\0\0\0\0"s, L"\u00E9"},        // 18: four bytes a character
        {"\x01\x0D\x08\0\0\0\xE9\0\0\0\0\0\0\0"s, L"\u00E9"},        // any other: the same
        {"\x01\xFF\x07\0\0\0\xE9\0\0\0\xE9\0\0"s, L"\u00E9"},        // no whole second character
        {"\x01\x01\x10\0\0\0a\0\0\0\0\0\0\0b\0\0\0\0\0\0\0"s, L"a"}, // ends at a null character
        {"\x01\x01\0\0\0\0"s, L""}};
    const auto server = RunServer();
    for (const auto& expected : cases) {
        SCOPED_TRACE(testing::PrintToString(expected.bytes));
        const std::size_t before = m_received.All().size();
        ServeWhile([&] {
            EXPECT_TRUE(Introduced().Send(expected.bytes));
            EXPECT_EQ(m_received.Await(before + 1).back(), expected.text);
        });
    }
}

TEST_F(IPCServerTest, DropsInvalidUtf8)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = Introduced();
        EXPECT_TRUE(client.Send("\x01\x11\x03\0\0\0\xE0\x80\0"s + c_executeA));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"a"));
    });
}

TEST_F(IPCServerTest, ServesFromALoopOnAnotherThread)
{
    std::thread thread([this] {
        const auto server = RunServer();
        ServeWhile([this] {
            EXPECT_TRUE(RawSocket::ConnectedTo(Path()).IsClosedByPeer());
            EXPECT_TRUE(IsServed());
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
        clients.push_back(Introduced());
        EXPECT_TRUE(clients.back().Send(c_executeA.substr(0, 9)));
        EXPECT_TRUE(IsServed());
    });

    server.reset();

    for (const RawSocket& client : clients)
        EXPECT_TRUE(client.IsClosedByPeer());
}

TEST_F(IPCServerTest, ServesAClientOfWxWidgetsAlone)
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
