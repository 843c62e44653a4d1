#include "haldend/ldap/LdapWire.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>
#include <utility>

#include "haldend/ldap/PeerCertificate.h"
#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {
namespace {

namespace kind = sdk::ldap::failure;
using Clock = std::chrono::steady_clock;

constexpr int sliceMilliseconds = 20;
/// Servers send entry by entry. A reader that is woken by each keeps them, and itself, from doing anything
/// else.
constexpr std::chrono::microseconds gatheringTime{100};
constexpr std::size_t bufferSize = 64 * 1024; // many small entries arrive in one piece

bool isNumeric(const std::string& host) {
    unsigned char bytes[sizeof(in6_addr)];
    return ::inet_pton(AF_INET, host.c_str(), bytes) == 1 || ::inet_pton(AF_INET6, host.c_str(), bytes) == 1;
}

std::string placeOf(const std::string& host, const std::string& address, int port) {
    const auto name = host == address ? address : host + " (" + address + ")";
    return name + ", port " + std::to_string(port);
}

LdapFailure unknownHost(const std::string& host, int status) {
    if (status == EAI_AGAIN)
        return {
            kind::unknownHost, "The address of \"" + host + "\" can't be found out now.",
            "The machine's name service gives no answer.",
            "Check whether this machine is on the network and whether its name servers answer, or enter the "
            "server's IP address."};
    return {kind::unknownHost, "There is no host named \"" + host + "\".",
            std::string("The machine's name service says: ") + ::gai_strerror(status) + ".",
            "Correct the name, or enter the server's IP address."};
}

LdapFailure notConnected(const std::string& place, int number, std::chrono::seconds limit) {
    if (number == ECONNREFUSED)
        return {kind::refused, "The host refuses the connection.", place + ": nothing listens there.",
                "Check whether the directory server runs on that host, and whether the port is right."};
    if (number == ETIMEDOUT)
        return {kind::timeout, "The host doesn't answer.",
                place + ": no answer within " + inSeconds(limit.count()) + ".",
                "Check whether the host is switched on, whether the address is right, and whether a firewall "
                "lies between."};
    return {kind::other, "The host can't be reached.", place + ": " + std::strerror(number) + ".",
            "Check whether this machine is on the network that the server belongs to."};
}

LdapFailure silent(const std::string& peer, std::chrono::seconds limit) {
    return {kind::timeout, "The server accepts the connection but doesn't respond.",
            peer + ": no answer to the attempt to encrypt within " + inSeconds(limit.count()) + ".",
            "Check whether a directory server, and not something else, listens on that port, and whether it "
            "hangs; or choose a longer time limit."};
}

LdapFailure noTls(const std::string& peer, const std::string& evidence) {
    return {kind::tlsUnsupported, "The server can't encrypt the connection in this way.",
            peer + ": " + evidence + ".",
            "Choose the other way to encrypt (StartTLS or LDAPS) or another port, or have the server's "
            "administrator switch encryption on."};
}

LdapFailure noAuthorities(const std::string& path, const std::string& evidence) {
    return {kind::caFileUnreadable, "The certificates of the authorities can't be read.",
            path + ": " + evidence + ".",
            "Choose a file that holds certificates in PEM form and that root may read."};
}

LdapWire& wireOf(Sockbuf_IO_Desc* description) { return *static_cast<LdapWire*>(description->sbiod_pvt); }

ssize_t pushed(gnutls_transport_ptr_t wire, const void* data, std::size_t length) {
    return ::send(static_cast<LdapWire*>(wire)->socket(), data, length, MSG_NOSIGNAL | MSG_DONTWAIT);
}
ssize_t pulled(gnutls_transport_ptr_t wire, void* data, std::size_t length) {
    return ::recv(static_cast<LdapWire*>(wire)->socket(), data, length, MSG_DONTWAIT);
}

} // namespace

LdapWire::~LdapWire() {
    if (session_) gnutls_deinit(session_);
    if (credentials_) gnutls_certificate_free_credentials(credentials_);
}

/// True once one of `events` has come, false at the deadline.
bool LdapWire::waitFor(short events, Time deadline) const {
    for (;;) {
        if (stop_.stop_requested()) throw Stopped();
        pollfd item{socket_.number(), events, 0};
        if (::poll(&item, 1, sliceMilliseconds) > 0) return true;
        if (Clock::now() >= deadline) return false;
    }
}

void LdapWire::pause() {
    if (std::exchange(isFlowing_, false)) std::this_thread::sleep_for(gatheringTime);
    (void)waitFor(POLLIN, Clock::now());
    if (stop_.stop_requested()) throw Stopped();
}

/// 0 or an error number.
int LdapWire::tryAddress(const HostAddress& address, Time deadline) {
    socket_ = FileDescriptor(::socket(address.family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket_.isOpen()) return errno;
    const auto* target = reinterpret_cast<const sockaddr*>(address.socketAddress.data());
    if (::connect(socket_.number(), target, static_cast<socklen_t>(address.socketAddress.size())) == 0)
        return 0;
    if (errno != EINPROGRESS) return errno;
    if (!waitFor(POLLOUT, deadline)) return ETIMEDOUT;
    int number = 0;
    socklen_t length = sizeof number;
    ::getsockopt(socket_.number(), SOL_SOCKET, SO_ERROR, &number, &length);
    return number;
}

void LdapWire::connect(const std::string& host, int port, std::chrono::seconds limit) {
    const auto deadline = Clock::now() + limit;
    const auto found = lookUpHost(host, port, stop_, deadline);
    if (found.status != 0) throw unknownHost(host, found.status);
    int number = ETIMEDOUT;
    for (const auto& address : found.addresses) {
        number = tryAddress(address, deadline);
        peer_ = placeOf(host, address.text, port);
        if (number == 0) return;
    }
    socket_.close();
    throw notConnected(peer_, number, limit);
}

void LdapWire::connectLocally(const std::string& path, std::chrono::seconds limit) {
    peer_ = path;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) throw notConnected(peer_, ENAMETOOLONG, limit);
    path.copy(address.sun_path, path.size());
    const auto* bytes = reinterpret_cast<const unsigned char*>(&address);
    const int number = tryAddress({AF_UNIX, {bytes, bytes + sizeof address}, path}, Clock::now() + limit);
    if (number != 0) throw notConnected(peer_, number, limit);
}

void LdapWire::loadAuthorities(const LdapTrust& trust) {
    const auto require = [](int status, const std::string& path) {
        if (status == GNUTLS_E_FILE_ERROR)
            throw noAuthorities(path, ::access(path.c_str(), R_OK) == 0 ? "it can't be read"
                                                                        : std::strerror(errno));
        if (status <= 0) throw noAuthorities(path, "it holds no certificate");
    };
    if (!trust.caFile.empty())
        require(
            gnutls_certificate_set_x509_trust_file(credentials_, trust.caFile.c_str(), GNUTLS_X509_FMT_PEM),
            trust.caFile);
    if (!trust.caFolder.empty())
        require(
            gnutls_certificate_set_x509_trust_dir(credentials_, trust.caFolder.c_str(), GNUTLS_X509_FMT_PEM),
            trust.caFolder);
    if (!trust.caFile.empty() || !trust.caFolder.empty()) return;
    const auto usual = usualLdapTrust();
    if (usual.caFile.empty() && usual.caFolder.empty())
        gnutls_certificate_set_x509_system_trust(credentials_);
    else
        loadAuthorities(usual);
}

void LdapWire::encrypt(const std::string& host, const LdapTrust& trust, std::chrono::seconds limit) {
    // Whoever is on the line could have put words into the server's mouth that would then count as encrypted.
    if (hasMore()) throw noTls(peer_, "it continues in the clear after agreeing to encrypt");
    gnutls_certificate_allocate_credentials(&credentials_);
    if (trust.isDemanded) loadAuthorities(trust);
    gnutls_init(&session_, GNUTLS_CLIENT | GNUTLS_NONBLOCK);
    gnutls_set_default_priority(session_);
    gnutls_credentials_set(session_, GNUTLS_CRD_CERTIFICATE, credentials_);
    if (!isNumeric(host)) gnutls_server_name_set(session_, GNUTLS_NAME_DNS, host.c_str(), host.size());
    gnutls_transport_set_ptr(session_, this);
    gnutls_transport_set_push_function(session_, pushed);
    gnutls_transport_set_pull_function(session_, pulled);
    try {
        shakeHands(Clock::now() + limit);
    } catch (const LdapFailure& failure) {
        throw failure.kind == kind::timeout ? silent(peer_, limit) : failure;
    }
    isEncrypted_ = true;
    if (!trust.isDemanded) return;
    if (const auto objection = objectionToPeer(session_, host, trust.authorities())) throw *objection;
}

void LdapWire::shakeHands(Time deadline) {
    for (;;) {
        const int status = gnutls_handshake(session_);
        if (status == GNUTLS_E_SUCCESS) return;
        if (status == GNUTLS_E_AGAIN || status == GNUTLS_E_INTERRUPTED) {
            const short events = gnutls_record_get_direction(session_) == 1 ? POLLOUT : POLLIN;
            if (!waitFor(events, deadline)) throw LdapFailure{kind::timeout, "", "", ""};
            continue;
        }
        if (gnutls_error_is_fatal(status) == 0) continue;
        std::string evidence = gnutls_strerror(status);
        if (evidence.ends_with('.')) evidence.pop_back();
        if (status == GNUTLS_E_FATAL_ALERT_RECEIVED)
            if (const auto* alert = gnutls_alert_get_name(gnutls_alert_get(session_)))
                evidence += std::string(" (") + alert + ")";
        throw noTls(peer_, evidence);
    }
}

std::string LdapWire::encryption() const {
    return std::string(gnutls_protocol_get_name(gnutls_protocol_get_version(session_))) + ". " +
           describedPeer(session_);
}

/// As read(2) without waiting, which the LDAP library does itself.
ber_slen_t LdapWire::receive(void* buffer, std::size_t length) {
    if (!isEncrypted_) return ::recv(socket_.number(), buffer, length, MSG_DONTWAIT);
    const auto count = gnutls_record_recv(session_, buffer, length);
    if (count >= 0) return count;
    const bool isLater = gnutls_error_is_fatal(static_cast<int>(count)) == 0;
    errno = isLater ? EAGAIN : ECONNRESET;
    return -1;
}

/// The library asks for a few bytes at a time.
ber_slen_t LdapWire::read(void* buffer, std::size_t length) {
    if (next_ == end_) {
        received_.resize(bufferSize);
        const auto count = receive(received_.data(), received_.size());
        if (count <= 0) return count;
        isFlowing_ = true;
        next_ = 0;
        end_ = static_cast<std::size_t>(count);
    }
    const auto count = std::min(length, end_ - next_);
    std::memcpy(buffer, received_.data() + next_, count);
    next_ += count;
    return static_cast<ber_slen_t>(count);
}

bool LdapWire::hasMore() const {
    return next_ < end_ || (isEncrypted_ && gnutls_record_check_pending(session_) > 0);
}

/// Waits where the server is slow in taking what it is sent; nothing may be thrown through the library.
ber_slen_t LdapWire::write(const void* buffer, ber_len_t length) {
    try {
        for (;;) {
            const auto count = isEncrypted_ ? gnutls_record_send(session_, buffer, length)
                                            : ::send(socket_.number(), buffer, length, MSG_NOSIGNAL);
            if (count >= 0) return count;
            const bool isLater = isEncrypted_ ? count == GNUTLS_E_AGAIN || count == GNUTLS_E_INTERRUPTED
                                              : errno == EAGAIN || errno == EINTR;
            if (!isLater || !waitFor(POLLOUT, writeDeadline_)) break;
        }
        errno = ECONNRESET;
    } catch (const Stopped&) {
        errno = ECANCELED;
    }
    return -1;
}

Sockbuf_IO* LdapWire::hooks() {
    static Sockbuf_IO hooks{[](Sockbuf_IO_Desc* description, void* wire) {
                                description->sbiod_pvt = wire;
                                return 0;
                            },
                            [](Sockbuf_IO_Desc*) { return 0; },
                            [](Sockbuf_IO_Desc* description, int option, void*) {
                                const bool isAsked = option == LBER_SB_OPT_DATA_READY;
                                return isAsked && wireOf(description).hasMore() ? 1 : 0;
                            },
                            [](Sockbuf_IO_Desc* description, void* buffer, ber_len_t length) {
                                return wireOf(description).read(buffer, length);
                            },
                            [](Sockbuf_IO_Desc* description, void* buffer, ber_len_t length) {
                                return wireOf(description).write(buffer, length);
                            },
                            [](Sockbuf_IO_Desc*) { return 0; }};
    return &hooks;
}

} // namespace corvane::haldend
