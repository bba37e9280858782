#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <kestra/net/socket_x.h>
#include <kestra/net/w_socket.h>
#include <platform/replaceable.h>

#include <tests/support/loopback_server.h>
#include <tests/support/recorders.h>
#include <tests/support/scripted_sockets.h>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

long millisecondsSince(Clock::time_point start) {
    return static_cast<long>(
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count());
}

void connectTo(CSocketX& socket, const LoopbackServer& server) {
    ASSERT_NE(AfxSocketInit(), 0);
    ASSERT_NE(socket.Create(), 0);
    ASSERT_NE(socket.Connect("127.0.0.1", server.port()), 0) << socket.GetLastError();
}

}  // namespace

TEST(SocketX, ABlockingCallEndsAfterItsTimeWith10060) {
    LoopbackServer server([](LoopbackServer::Client& client) { client.readUntil("fin"); });
    CSocketX socket;
    connectTo(socket, server);
    CString text = "avant";
    auto start = Clock::now();
    EXPECT_EQ(socket.Receive(text, 300, 0), -1);
    EXPECT_GE(millisecondsSince(start), 290);
    EXPECT_EQ(CSocketX::GetLastError(), 10060);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(socket.Send("?\r\n", "250", 200, 0), 0) << "the connection can still be used";
    EXPECT_LT(millisecondsSince(start), 3000);

    socket.Send("fin", 5000u, 0);
}

TEST(SocketX, SendingIsTimedToo) {
    // The server reads nothing until told by the test's end: the system's buffers fill up.
    std::atomic<bool> done{false};
    LoopbackServer server([&](LoopbackServer::Client&) {
        while (!done) std::this_thread::sleep_for(5ms);
    });
    CSocketX socket;
    connectTo(socket, server);
    const std::string much(64 * 1024 * 1024, 'x');
    const auto start = Clock::now();
    EXPECT_EQ(socket.SendBin(much.data(), static_cast<long>(much.size()), 400, 0), -1);
    EXPECT_LT(millisecondsSince(start), 5000);
    EXPECT_EQ(CSocketX::GetLastError(), 10060);
    done = true;
}

TEST(SocketX, TheTimeOutEndsAConnectThatWaits) {
    ScriptedSockets sockets("");
    sockets.isSilent = true;
    const platform::Replaced replaced(platform::replaceSockets, sockets);
    CSocketX socket;
    ASSERT_NE(socket.Create(), 0);
    ASSERT_NE(socket.SetTimeOut(100), 0);
    const auto start = Clock::now();
    EXPECT_EQ(socket.Connect("poste", 25), 0);
    EXPECT_EQ(CSocketX::GetLastError(), 10004);
    EXPECT_LT(millisecondsSince(start), 5000);
    EXPECT_EQ(socket.KillTimeOut(), 1);
}

TEST(WSocket, OneRequestOneAnswer) {
    const std::string host = ownLoopbackAddress();
    std::string reply;
    LoopbackServer server(
        [&](LoopbackServer::Client& client) {
            client.readUntil(".");
            client.write(std::string(reply));  // a copy: the next reply may be made while this one is sent
        },
        host.c_str(), CWSocket::port);
    for (const std::string& answer : {std::string("a\0b", 3), std::string(), std::string(4000, 'x')}) {
        reply = answer;
        EXPECT_STREQ(CWSocket::ServeurCommand(host.c_str(), "etat.", 0, 7), answer.c_str());
    }
    reply = std::string(5000, 'y');
    const std::string cut = CWSocket::ServeurCommand(host.c_str(), "etat.suite", 5, 0);
    EXPECT_TRUE(!cut.empty() && cut.size() <= 4000);
    EXPECT_EQ(server.received(), "etat.etat.etat.etat.");
}

TEST(WSocket, KeptAReadOfExactly10054BytesCountsAsReset) {
    const std::string host = ownLoopbackAddress();
    LoopbackServer server(
        [](LoopbackServer::Client& client) {
            client.write(std::string(10054, 'z'));
            client.readUntil("fin");
        },
        host.c_str(), CWSocket::port);
    for (const auto& [size, result] : {std::pair{10053, 10053}, std::pair{10054, -1}}) {
        CWSocket socket;
        ASSERT_EQ(socket.Connect(host.c_str()), 1);
        std::vector<char> buffer(20000);
        EXPECT_EQ(socket.Send("", 0), 0);
        std::this_thread::sleep_for(300ms);  // all of it must have arrived, so that one read can take it
        EXPECT_EQ(socket.Recv(buffer.data(), size), result);
        socket.Send("fin", 0);
    }
}

TEST(WSocket, FailuresAreTracedAndAReplyLimitHolds) {
    const std::string host = ownLoopbackAddress();
    {
        const RecordedTraces traces;
        EXPECT_STREQ(CWSocket::ServeurCommand(host.c_str(), "x", 0, 0), "");
        EXPECT_EQ(traces.lines(), std::vector<std::string>{"Failed to connect.Err=10061," + host});
    }

    LoopbackServer silent([](LoopbackServer::Client& client) { client.readUntil("never"); }, host.c_str(),
                          CWSocket::port);
    EXPECT_EQ(CWSocket::SetReplyLimit(200), 0u);
    const auto start = Clock::now();
    EXPECT_STREQ(CWSocket::ServeurCommand(host.c_str(), "x", 0, 0), "");
    EXPECT_LT(millisecondsSince(start), 5000);
    EXPECT_EQ(CWSocket::SetReplyLimit(0), 200u);
}
