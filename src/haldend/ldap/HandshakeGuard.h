#pragma once

#include <ldap.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace corvane::haldend {

/// Ends the encrypted opening of an LDAP connection that takes too long, by shutting its socket down.
///
/// The LDAP library's own time limit doesn't cover this: with a limit set, its encryption library spins on a
/// server that accepts and says nothing; without one, it waits for ever. So the limit is taken off once the
/// socket is connected, and a second thread watches the clock; it touches nothing but the socket.
class HandshakeGuard {
public:
    /// Watches `ldap`, which isn't connected yet, for `patience` or until this object goes.
    HandshakeGuard(LDAP* ldap, std::chrono::seconds patience);
    HandshakeGuard(const HandshakeGuard&) = delete;
    HandshakeGuard& operator=(const HandshakeGuard&) = delete;
    ~HandshakeGuard();

private:
    static int connected(LDAP* ldap, Sockbuf* socket, LDAPURLDesc* server, struct sockaddr* address,
                         struct ldap_conncb* context);
    static void disconnected(LDAP* ldap, Sockbuf* socket, struct ldap_conncb* context);
    void watch(std::chrono::seconds patience);

    LDAP* ldap_;
    ldap_conncb callbacks_{};
    std::mutex mutex_;
    std::condition_variable changed_;
    int socket_ = -1;
    bool isOver_ = false;
    std::thread watcher_;
};

} // namespace corvane::haldend
