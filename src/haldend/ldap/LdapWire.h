#pragma once

#include <gnutls/gnutls.h>
#include <lber.h>

#include <chrono>
#include <stop_token>
#include <string>
#include <vector>

#include "haldend/ldap/HostLookup.h"
#include "haldend/ldap/LdapFailure.h"
#include "haldend/ldap/LdapTrust.h"
#include "haldend/storage/FileDescriptor.h"

namespace corvane::haldend {

/// A connection to one server, plain at first, encrypted from `encrypt` on, that the LDAP library reads and
/// writes through. The library's own connecting and encrypting can neither be interrupted nor say exactly
/// what went wrong, and its own writing ends the process where the server has hung up; here every wait ends
/// at its time limit, or within a few hundredths of a second after `stop` is requested. One thread.
class LdapWire {
public:
    explicit LdapWire(std::stop_token stop) : stop_(std::move(stop)) {}
    LdapWire(const LdapWire&) = delete;
    LdapWire& operator=(const LdapWire&) = delete;
    ~LdapWire();

    /// Each throws `LdapFailure` or `Stopped`.
    void connect(const std::string& host, int port, std::chrono::seconds limit);
    /// `path` of a socket in the file system.
    void connectLocally(const std::string& path, std::chrono::seconds limit);
    /// `host` is whom the certificate must be made out for.
    void encrypt(const std::string& host, const LdapTrust& trust, std::chrono::seconds limit);
    /// Until when the library's writing waits for a server that is slow in taking what it is sent.
    void setWriteDeadline(std::chrono::steady_clock::time_point deadline) { writeDeadline_ = deadline; }
    /// Waits a moment for the server to say something, and for it to go on where it has just said something.
    void pause();

    [[nodiscard]] int socket() const { return socket_.number(); }
    /// "192.0.2.1, port 389", once connected.
    [[nodiscard]] const std::string& peer() const { return peer_; }
    /// For people, once encrypted.
    [[nodiscard]] std::string encryption() const;

    /// The hooks by which the LDAP library uses a wire, which is their argument.
    [[nodiscard]] static Sockbuf_IO* hooks();

private:
    using Time = std::chrono::steady_clock::time_point;
    [[nodiscard]] int tryAddress(const HostAddress& address, Time deadline);
    [[nodiscard]] bool waitFor(short events, Time deadline) const;
    void shakeHands(Time deadline);
    void loadAuthorities(const LdapTrust& trust);
    [[nodiscard]] bool hasMore() const;
    [[nodiscard]] ber_slen_t receive(void* buffer, std::size_t length);
    [[nodiscard]] ber_slen_t read(void* buffer, std::size_t length);
    [[nodiscard]] ber_slen_t write(const void* buffer, ber_len_t length);

    std::stop_token stop_;
    FileDescriptor socket_;
    std::string peer_;
    gnutls_session_t session_ = nullptr;
    gnutls_certificate_credentials_t credentials_ = nullptr;
    bool isEncrypted_ = false;
    Time writeDeadline_;
    bool isFlowing_ = false;     ///< something has come since the last pause
    std::vector<char> received_; ///< what the library hasn't asked for yet begins at `next_`
    std::size_t next_ = 0, end_ = 0;
};

} // namespace corvane::haldend
