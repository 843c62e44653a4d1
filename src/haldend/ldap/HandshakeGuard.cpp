#include "haldend/ldap/HandshakeGuard.h"

#include <sys/socket.h>

namespace corvane::haldend {

HandshakeGuard::HandshakeGuard(LDAP* ldap, std::chrono::seconds patience) : ldap_(ldap) {
    callbacks_.lc_add = connected;
    callbacks_.lc_del = disconnected;
    callbacks_.lc_arg = this;
    ldap_set_option(ldap_, LDAP_OPT_CONNECT_CB, &callbacks_);
    watcher_ = std::thread([this, patience] { watch(patience); });
}

HandshakeGuard::~HandshakeGuard() {
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    changed_.notify_one();
    watcher_.join();
    // The library keeps a pointer to the callbacks, and getting them takes them off.
    ldap_get_option(ldap_, LDAP_OPT_CONNECT_CB, &callbacks_);
}

int HandshakeGuard::connected(LDAP* ldap, Sockbuf* socket, LDAPURLDesc*, struct sockaddr*,
                              struct ldap_conncb* context) {
    auto& guard = *static_cast<HandshakeGuard*>(context->lc_arg);
    const std::lock_guard lock(guard.mutex_);
    ber_sockbuf_ctrl(socket, LBER_SB_OPT_GET_FD, &guard.socket_);
    ldap_set_option(ldap, LDAP_OPT_NETWORK_TIMEOUT, nullptr);
    return 0;
}

void HandshakeGuard::disconnected(LDAP*, Sockbuf*, struct ldap_conncb* context) {
    auto& guard = *static_cast<HandshakeGuard*>(context->lc_arg);
    const std::lock_guard lock(guard.mutex_);
    guard.socket_ = -1;
}

void HandshakeGuard::watch(std::chrono::seconds patience) {
    std::unique_lock lock(mutex_);
    if (changed_.wait_for(lock, patience, [this] { return isOver_; })) return;
    if (socket_ >= 0) ::shutdown(socket_, SHUT_RDWR);
}

} // namespace corvane::haldend
