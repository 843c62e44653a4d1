#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include "haldend/OwnMounts.h"
#include "haldend/TestSlapd.h"
#include "haldend/ldap/LdapLibrary.h"
#include "haldend/storage/FileDescriptor.h"

// A machine whose own name is in no file and whose name server says nothing, made in namespaces of a child
// process.

using namespace corvane;
using namespace corvane::haldend::test;

namespace {

constexpr int couldNot = 100;

/// The child's own network, with nothing but loopback.
bool ownLoopback() {
    if (::unshare(CLONE_NEWNET | CLONE_NEWUTS) != 0) return false;
    const haldend::FileDescriptor any(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ifreq request{};
    std::string("lo").copy(request.ifr_name, IFNAMSIZ);
    request.ifr_flags = IFF_UP;
    return ::ioctl(any.number(), SIOCSIFFLAGS, &request) == 0;
}

bool useNameServer(const TemporaryFolder& folder) {
    folder.write("resolv.conf", "nameserver 127.0.0.1\n");
    folder.write("nsswitch.conf", "hosts: files dns\n");
    const std::string name = "machine-without-an-entry";
    return ::sethostname(name.c_str(), name.size()) == 0 &&
           ::mount((folder.path() + "/resolv.conf").c_str(), "/etc/resolv.conf", nullptr, MS_BIND, nullptr) ==
               0 &&
           ::mount((folder.path() + "/nsswitch.conf").c_str(), "/etc/nsswitch.conf", nullptr, MS_BIND,
                   nullptr) == 0;
}

/// A socket where the questions arrive, and stay.
haldend::FileDescriptor silentNameServer() {
    haldend::FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(53);
    if (::bind(socket.number(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) socket.close();
    return socket;
}

int questionsAt(const haldend::FileDescriptor& socket) {
    char question[512];
    int count = 0;
    while (::recv(socket.number(), question, sizeof question, 0) > 0)
        ++count;
    return count;
}

/// How many questions about the machine's own name the library's first use causes.
int questionsInAChild(const TemporaryFolder& folder) {
    const auto child = ::fork();
    if (child == 0) {
        if (!ownMounts() || !ownLoopback() || !useNameServer(folder)) ::_exit(couldNot);
        const auto server = silentNameServer();
        if (!server.isOpen()) ::_exit(couldNot);
        haldend::LdapSection section;
        section.uris = {"ldap://127.0.0.1:1"};
        try {
            (void)haldend::LdapDirectory(section);
        } catch (const haldend::Failure&) { // nothing listens there
        }
        ::_exit(questionsAt(server));
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

TEST(SilentNameServer, firstUseOfTheLdapLibrary_asksOnceForTheMachinesOwnName) {
    const TemporaryFolder folder;
    const int questions = questionsInAChild(folder);
    if (questions == couldNot && ::geteuid() != 0)
        GTEST_SKIP() << "this user can't have a network and a host name of its own here";
    ASSERT_NE(questions, couldNot) << "root can have a network and a host name of its own";
    EXPECT_GE(questions, 1) << "the library doesn't ask at all: then nothing needs to be prepared";
    EXPECT_LE(questions, 2) << "one each for the two kinds of addresses";
}
