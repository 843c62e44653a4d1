#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace corvane::util {

/// Names posted in the process, and who wants to hear of them. A notification is delivered at once, on the
/// posting thread, to every observer in the order they registered. Main thread.
class NotificationCenter {
public:
    /// Observes for as long as it lives. It may outlive the centre and be dropped during a delivery.
    class Observation {
    public:
        virtual ~Observation() = default;
    };

    NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;
    ~NotificationCenter();

    [[nodiscard]] std::unique_ptr<Observation> observe(std::string name, std::function<void()> handler);
    void post(std::string_view name);

private:
    struct Registry;
    class Entry;
    std::shared_ptr<Registry> registry_;
};

} // namespace corvane::util
