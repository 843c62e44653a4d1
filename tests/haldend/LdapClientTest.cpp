#include "haldend/ldap/LdapClient.h"

#include <future>

#include "haldend/TestSlapd.h"
#include "haldend/ldap/HostLookup.h"
#include "sdk/LdapServerCalls.h"

using namespace corvane::haldend;
using namespace corvane::haldend::test;
namespace kind = corvane::sdk::ldap::failure;

namespace {

using Names = std::vector<std::string>;

/// Serves one connection as a test wants it.
class OneConnection {
public:
    template <typename Serve>
    explicit OneConnection(const Serve& serve)
        : thread_([this, serve] {
              const int client = ::accept(listener_.socket(), nullptr, nullptr);
              serve(client);
              ::close(client);
          }) {}
    [[nodiscard]] int port() const { return listener_.port(); }
    void waitUntilItIsOver() { thread_.join(); }

private:
    SilentServer listener_;
    std::jthread thread_;
};

/// The kind of the failure, "" for none.
template <typename Action>
std::string failureOf(const Action& action) {
    try {
        action();
    } catch (const LdapFailure& failure) {
        return failure.kind;
    }
    return {};
}

/// Hangs up so hard that whatever is written later is refused.
void reset(int client) {
    const linger atOnce{1, 0};
    ::setsockopt(client, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

} // namespace

TEST(LdapClient, entries_comeWithTheirNameAndValues) {
    const TestSlapd slapd;
    LdapClient client;
    client.connect("127.0.0.1", slapd.port());
    EXPECT_EQ(client.bind("", "").status, 0);
    Names seen;
    const auto answer = client.search(
        {"dc=example,dc=com", 2, "(cn=makers)", {"memberUid", "CN"}}, [&](const LdapEntry& entry) {
            seen.push_back(entry.name());
            EXPECT_EQ(entry.values("MEMBERUID"), (Names{"bertha", "odd*(name)"}));
            EXPECT_EQ(entry.values("description"), Names{});
            entry.eachValue([&](std::string_view attribute, std::string_view value) {
                seen.push_back(std::string(attribute) + "=" + std::string(value));
            });
        });
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(seen, (Names{"cn=makers,dc=example,dc=com", "cn=makers", "memberUid=bertha",
                           "memberUid=odd*(name)"}));
    EXPECT_EQ(client.defaultBase(), "dc=example,dc=com");
}

TEST(LdapClient, enoughEntries_endTheSearchAndLeaveTheConnectionUsable) {
    const TestSlapd slapd(50);
    LdapClient client;
    client.connect("127.0.0.1", slapd.port());
    for (const int pageSize : {0, 5, 100}) {
        std::size_t count = 0;
        const auto answer = client.search({"dc=example,dc=com", 2, "(uid=*)", {"uid"}, 12, pageSize},
                                          [&](const LdapEntry&) { ++count; });
        EXPECT_EQ(count, 12U) << pageSize;
        EXPECT_EQ(answer.status, 0) << pageSize;
    }
    EXPECT_EQ(client.defaultBase(), "dc=example,dc=com");
}

TEST(LdapClient, whatTheServerRefuses_isAnAnswer) {
    const TestSlapd slapd;
    LdapClient client;
    client.connect("127.0.0.1", slapd.port());
    const auto wrong = client.bind("cn=admin,dc=example,dc=com", "hunter2");
    EXPECT_EQ(wrong.status, 49);
    EXPECT_NE(wrong.text().find("\"Invalid credentials\" (49)"), std::string::npos) << wrong.text();
    const auto missing = client.search({"ou=none,dc=example,dc=com", 2, "(uid=*)", {"uid"}},
                                       [](const LdapEntry&) { ADD_FAILURE() << "nothing is there"; });
    EXPECT_EQ(missing.status, 32);
    EXPECT_EQ(missing.matched, "dc=example,dc=com");
}

TEST(LdapClient, serverThatHangsUp_isAFailureAndNotTheEndOfTheProcess) {
    std::promise<void> connected;
    OneConnection server([&](int client) {
        connected.get_future().wait();
        reset(client);
    });
    LdapClient client;
    client.connect("127.0.0.1", server.port());
    connected.set_value();
    server.waitUntilItIsOver();
    EXPECT_EQ(failureOf([&] { (void)client.bind("", ""); }), kind::other) << "a write that is refused";
    EXPECT_EQ(failureOf([&] { (void)client.bind("", ""); }), kind::other) << "a write into a broken pipe";
}

TEST(LdapClient, wordsBetweenTheConsentAndTheEncryption_areRefused) {
    OneConnection server([](int client) {
        char request[256];
        (void)::recv(client, request, sizeof request, 0);
        // Yes to StartTLS, and in the same breath the answer to a request that hasn't been made.
        const std::string yes("\x30\x0c\x02\x01\x01\x78\x07\x0a\x01\x00\x04\x00\x04\x00", 14);
        const std::string more("\x30\x0c\x02\x01\x02\x61\x07\x0a\x01\x00\x04\x00\x04\x00", 14);
        (void)::send(client, (yes + more).data(), 28, MSG_NOSIGNAL);
        (void)::recv(client, request, sizeof request, 0);
    });
    LdapClient client({std::chrono::seconds(2), std::chrono::seconds(2)});
    client.connect("127.0.0.1", server.port());
    client.startTls();
    EXPECT_EQ(failureOf([&] { client.encrypt({}); }), kind::tlsUnsupported);
    EXPECT_EQ(failureOf([&] { client.encrypt({"", "", false}); }), kind::tlsUnsupported);
}

TEST(LdapClient, serverThatTakesNothing_isGivenUpAfterTheTimeLimit) {
    const SilentServer server;
    LdapClient client({std::chrono::seconds(1), std::chrono::seconds(1)});
    client.connect("127.0.0.1", server.port());
    const std::string large(32 * 1024 * 1024, 'x'); // more than the kernel keeps for it
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(failureOf([&] { (void)client.bind("cn=x", large); }), kind::timeout);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST(LdapClient, stop_endsAWaitAtOnce) {
    const SilentServer server;
    std::stop_source stop;
    LdapClient client({}, stop.get_token());
    client.connect("127.0.0.1", server.port());
    const auto begin = std::chrono::steady_clock::now();
    const std::jthread later([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        stop.request_stop();
    });
    EXPECT_THROW((void)client.bind("", ""), Stopped);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

TEST(LdapClient, reservedCharactersOfFilters_areEscaped) {
    EXPECT_EQ(filterEscaped("odd*(name)\\"), "odd\\2a\\28name\\29\\5c");
    EXPECT_EQ(filterEscaped("é"), "\\c3\\a9");
}
