#include "haldend/EmbeddedDynamicStore.h"

#include <algorithm>

#include "halden/Calls.h"

namespace corvane::haldend {

/// The sessions that the run loop keeps.
struct EmbeddedDynamicStore::Listeners {
    std::vector<std::shared_ptr<Session>> sessions;
    Post post;
};

class EmbeddedDynamicStore::Session final
    : public platform::DynamicStoreSession,
      public std::enable_shared_from_this<EmbeddedDynamicStore::Session> {
public:
    Session(std::weak_ptr<Listeners> listeners, std::function<void()> callback)
        : listeners_(std::move(listeners)), callback_(std::move(callback)) {}

    [[nodiscard]] bool setNotificationKeys(const std::vector<std::string>& keys) override {
        keys_ = keys;
        return true;
    }
    void addToRunLoop() override {
        const auto listeners = listeners_.lock();
        if (!listeners) return;
        auto& sessions = listeners->sessions;
        if (std::ranges::find(sessions, shared_from_this()) == sessions.end())
            sessions.push_back(shared_from_this());
    }
    void policyChanged() const {
        if (std::ranges::find(keys_, halden::searchPolicyChangedKey) != keys_.end() && callback_) callback_();
    }

private:
    std::weak_ptr<Listeners> listeners_;
    std::function<void()> callback_;
    std::vector<std::string> keys_;
};

EmbeddedDynamicStore::EmbeddedDynamicStore(const std::shared_ptr<Engine>& engine, Post post)
    : listeners_(std::make_shared<Listeners>()) {
    listeners_->post = std::move(post);
    engine->addChangeListener([weak = std::weak_ptr(listeners_)] {
        const auto listeners = weak.lock();
        if (!listeners) return;
        listeners->post([listeners] {
            const auto sessions = listeners->sessions; // one that is told may add another
            for (const auto& session : sessions)
                session->policyChanged();
        });
    });
}

std::shared_ptr<platform::DynamicStoreSession> EmbeddedDynamicStore::create(const std::string&,
                                                                            std::function<void()> callback) {
    return std::make_shared<Session>(listeners_, std::move(callback));
}

} // namespace corvane::haldend
