#pragma once

#include <arpa/inet.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "haldend/TestMachine.h"
#include "haldend/ldap/LdapDirectory.h"
#include "haldend/storage/ChildProcess.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend::test {

/// A listening socket on loopback that accepts connections (the kernel does) and says nothing.
class SilentServer {
public:
    /// `room`: for how many connections, as listen(2) counts them.
    explicit SilentServer(int room = 5) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        EXPECT_EQ(::bind(socket_, reinterpret_cast<sockaddr*>(&address), length), 0);
        EXPECT_EQ(::listen(socket_, room), 0);
        EXPECT_EQ(::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length), 0);
        port_ = ntohs(address.sin_port);
    }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;
    ~SilentServer() { stop(); }
    void stop() {
        if (socket_ >= 0) ::close(socket_);
        socket_ = -1;
    }
    [[nodiscard]] int port() const { return port_; }
    [[nodiscard]] int socket() const { return socket_; }
    /// A socket on its way to this server, which the caller closes.
    [[nodiscard]] int connection() const {
        const int client = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(port_));
        (void)::connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address);
        return client;
    }

private:
    int socket_;
    int port_ = 0;
};

/// A server that answers whatever it is asked with the beginning of an endless answer, byte by byte.
class SlowServer {
public:
    SlowServer()
        : thread_([this](const std::stop_token& stop) {
              const int client = ::accept(listener_.socket(), nullptr, nullptr);
              // A sequence that is said to be long; what follows are empty elements.
              for (std::size_t sent = 0; !stop.stop_requested() && client >= 0; ++sent) {
                  constexpr unsigned char begin[] = {0x30, 0x83, 0x0F, 0xFF, 0xFF};
                  const unsigned char byte = sent < sizeof begin ? begin[sent] : 0;
                  if (::send(client, &byte, 1, MSG_NOSIGNAL) != 1) break;
                  std::this_thread::sleep_for(std::chrono::milliseconds(20));
              }
              ::close(client);
          }) {}
    ~SlowServer() { ::shutdown(listener_.socket(), SHUT_RDWR); }
    SlowServer(const SlowServer&) = delete;
    SlowServer& operator=(const SlowServer&) = delete;
    [[nodiscard]] int port() const { return listener_.port(); }

private:
    SilentServer listener_;
    std::jthread thread_;
};

/// A port of loopback on which nothing listens.
inline int unusedPort() {
    const SilentServer server;
    return server.port();
}

/// A real slapd on loopback with dc=example,dc=com: a few people, and as many more as wanted.
class TestSlapd {
public:
    /// `limits`: lines of slapd.conf before its database, of any kind. `moreEntries`: LDIF.
    /// `certificates`: a folder with cert.pem and key.pem that it is to show, "" for one of its own.
    explicit TestSlapd(int extraUsers = 0, const std::string& limits = "sizelimit unlimited",
                       bool withTls = false, const std::string& certificates = "",
                       const std::string& moreEntries = "")
        : port_(unusedPort()), tlsPort_(withTls ? unusedPort() : 0) {
        // Its programs look the machine's own name up, for ten seconds each where no name server answers.
        ::setenv("RES_OPTIONS", "timeout:1 attempts:1", 0);
        if (withTls && certificates.empty()) makeCertificate();
        for (const auto* name : {"cert.pem", "key.pem"})
            if (!certificates.empty())
                std::filesystem::copy(certificates + "/" + name, folder_.path() + "/" + name);
        folder_.write("slapd.conf", configuration(limits, withTls));
        folder_.write("entries.ldif", entries(extraUsers) + moreEntries);
        std::filesystem::create_directory(folder_.path() + "/data");
        const auto loaded = runProcess({"/usr/sbin/slapadd", "-q", "-f", folder_.path() + "/slapd.conf", "-l",
                                        folder_.path() + "/entries.ldif"},
                                       std::chrono::seconds(60));
        EXPECT_EQ(loaded.status, 0) << loaded.output;
        start();
    }
    TestSlapd(const TestSlapd&) = delete;
    TestSlapd& operator=(const TestSlapd&) = delete;
    ~TestSlapd() {
        ::kill(server_, SIGTERM);
        ::waitpid(server_, nullptr, 0);
    }

    [[nodiscard]] int port() const { return port_; }
    [[nodiscard]] int tlsPort() const { return tlsPort_; }
    [[nodiscard]] std::string uri() const { return "ldap://127.0.0.1:" + std::to_string(port_); }
    [[nodiscard]] std::string tlsUri() const { return "ldaps://127.0.0.1:" + std::to_string(tlsPort_); }
    /// Of its socket in the file system.
    [[nodiscard]] std::string localUri() const {
        std::string uri = "ldapi://";
        for (const char c : localPath())
            uri += c == '/' ? "%2F" : std::string(1, c);
        return uri;
    }
    [[nodiscard]] std::string certificate() const { return folder_.path() + "/cert.pem"; }

private:
    std::string localPath() const { return folder_.path() + "/ldapi"; }
    std::string configuration(const std::string& limits, bool withTls) const {
        const auto& path = folder_.path();
        std::string text;
        for (const auto* schema : {"core", "cosine", "nis", "inetorgperson"})
            text += std::string("include /etc/ldap/schema/") + schema + ".schema\n";
        text += "modulepath /usr/lib/ldap\nmoduleload back_mdb\npidfile " + path + "/pid\n" + limits + "\n";
        if (withTls)
            text += "TLSCertificateFile " + path + "/cert.pem\nTLSCertificateKeyFile " + path + "/key.pem\n";
        return text +
               "database mdb\nsuffix dc=example,dc=com\nrootdn cn=admin,dc=example,dc=com\nrootpw s3cret#;x\n"
               "directory " +
               path + "/data\nmaxsize 1073741824\nindex objectClass eq\nindex uid,cn eq\n";
    }
    static std::string person(const std::string& uid, const std::string& name, int number) {
        return "dn: uid=" + uid +
               ",ou=people,dc=example,dc=com\nobjectClass: inetOrgPerson\nobjectClass: posixAccount\nuid: " +
               uid + "\ncn: " + name + "\nsn: x\nuidNumber: " + std::to_string(number) +
               "\ngidNumber: 5000\nhomeDirectory: /home/" + uid + "\nloginShell: /bin/bash\nmail: " + uid +
               "@example.com\n\n";
    }
    static std::string entries(int extraUsers) {
        std::string text =
            "dn: dc=example,dc=com\nobjectClass: dcObject\nobjectClass: organization\no: Example\ndc: "
            "example\n\n"
            "dn: ou=people,dc=example,dc=com\nobjectClass: organizationalUnit\nou: people\n\n"
            "dn: cn=makers,dc=example,dc=com\nobjectClass: posixGroup\ncn: makers\ngidNumber: 5000\n"
            "memberUid: bertha\nmemberUid: odd*(name)\n\n";
        text += person("bertha", "Bertha Birch", 5001) + person("odd*(name)", "Odd", 5002);
        for (int i = 0; i < extraUsers; ++i)
            text += person("user" + std::to_string(i), "User", 10000 + i);
        return text;
    }
    void makeCertificate() const {
        const auto& path = folder_.path();
        const auto made = runProcess({"/usr/bin/openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                                      "ec_paramgen_curve:prime256v1", "-nodes", "-keyout", path + "/key.pem",
                                      "-out", path + "/cert.pem", "-days", "2", "-subj", "/CN=127.0.0.1",
                                      "-addext", "subjectAltName=IP:127.0.0.1"},
                                     std::chrono::seconds(30));
        EXPECT_EQ(made.status, 0) << made.output;
    }
    void start() {
        const auto configurationPath = folder_.path() + "/slapd.conf";
        const auto listeners = uri() + "/ " + localUri() + (tlsPort_ ? " " + tlsUri() + "/" : "");
        server_ = ::fork();
        if (server_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::execl("/usr/sbin/slapd", "slapd", "-f", configurationPath.c_str(), "-h", listeners.c_str(),
                    "-d", "0", nullptr);
            ::_exit(127);
        }
        for (int i = 0; i < 500 && !answers(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    [[nodiscard]] bool answers() const {
        try {
            LdapSection section;
            section.uris = {uri()};
            return !LdapDirectory(section).defaultBase().empty();
        } catch (const Failure& failure) {
            return failure.error().reason.find("trying to connect") ==
                   std::string::npos; // a refusal is an answer
        }
    }

    TemporaryFolder folder_;
    int port_;
    int tlsPort_;
    pid_t server_ = -1;
};

} // namespace corvane::haldend::test
