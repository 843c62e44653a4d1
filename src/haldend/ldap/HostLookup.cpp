#include "haldend/ldap/HostLookup.h"

#include <arpa/inet.h>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace corvane::haldend {
namespace {

struct Shared {
    std::mutex mutex;
    std::condition_variable_any changed;
    bool isDone = false;
    HostLookupResult result;
};

std::string textOf(const addrinfo& found) {
    char text[INET6_ADDRSTRLEN] = "";
    ::getnameinfo(found.ai_addr, found.ai_addrlen, text, sizeof text, nullptr, 0, NI_NUMERICHOST);
    return text;
}

HostLookupResult resolved(const std::string& host, int port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* list = nullptr;
    HostLookupResult result;
    result.status = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &list);
    if (result.status != 0) return result;
    for (const auto* one = list; one; one = one->ai_next) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(one->ai_addr);
        result.addresses.push_back({one->ai_family, {bytes, bytes + one->ai_addrlen}, textOf(*one)});
    }
    ::freeaddrinfo(list);
    return result;
}

} // namespace

HostLookupResult lookUpHost(const std::string& host, int port, const std::stop_token& stop,
                            std::chrono::steady_clock::time_point deadline) {
    const auto shared = std::make_shared<Shared>();
    std::thread([shared, host, port] {
        auto result = resolved(host, port);
        const std::lock_guard lock(shared->mutex);
        shared->result = std::move(result);
        shared->isDone = true;
        shared->changed.notify_all();
    }).detach();
    std::unique_lock lock(shared->mutex);
    const bool isDone = shared->changed.wait_until(lock, stop, deadline, [&] { return shared->isDone; });
    if (stop.stop_requested()) throw Stopped();
    return isDone ? shared->result : HostLookupResult();
}

} // namespace corvane::haldend
