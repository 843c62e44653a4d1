#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "haldend/engine/Engine.h"
#include "platform/DynamicStore.h"

namespace corvane::haldend {

/// Tells listeners of the engine's changes: other programs' edits and the program's own. The one key that is
/// known is `halden::searchPolicyChangedKey`: the policies or what they are made from have changed.
class EmbeddedDynamicStore final : public platform::DynamicStore {
public:
    /// Runs its argument from the main loop, later.
    using Post = std::function<void(std::function<void()>)>;
    EmbeddedDynamicStore(const std::shared_ptr<Engine>& engine, Post post);
    [[nodiscard]] std::shared_ptr<platform::DynamicStoreSession>
    create(const std::string& name, std::function<void()> callback) override;

private:
    struct Listeners;
    class Session;
    std::shared_ptr<Listeners> listeners_;
};

} // namespace corvane::haldend
