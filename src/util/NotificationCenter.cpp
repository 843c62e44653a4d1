#include "util/NotificationCenter.h"

#include <algorithm>
#include <vector>

namespace corvane::util {

struct NotificationCenter::Registry {
    std::vector<const Entry*> entries;
};

class NotificationCenter::Entry final : public Observation {
public:
    Entry(std::shared_ptr<Registry> registry, std::string name, std::function<void()> handler)
        : registry_(std::move(registry)), name_(std::move(name)), handler_(std::move(handler)) {
        registry_->entries.push_back(this);
    }
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    ~Entry() override { std::erase(registry_->entries, this); }

    [[nodiscard]] bool wants(std::string_view name) const { return name_ == name; }
    // The handler may drop this very observation; it runs from a copy.
    void deliver() const {
        const auto handler = handler_;
        handler();
    }

private:
    std::shared_ptr<Registry> registry_;
    std::string name_;
    std::function<void()> handler_;
};

NotificationCenter::NotificationCenter() : registry_(std::make_shared<Registry>()) {}
NotificationCenter::~NotificationCenter() = default;

std::unique_ptr<NotificationCenter::Observation> NotificationCenter::observe(std::string name,
                                                                             std::function<void()> handler) {
    return std::make_unique<Entry>(registry_, std::move(name), std::move(handler));
}

void NotificationCenter::post(std::string_view name) {
    const auto registry = registry_;
    const auto atPosting = registry->entries;
    for (const auto* entry : atPosting) {
        const bool stillThere = std::ranges::find(registry->entries, entry) != registry->entries.end();
        if (stillThere && entry->wants(name)) entry->deliver();
    }
}

} // namespace corvane::util
