#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "haldend/engine/Engine.h"
#include "platform/DynamicStore.h"

namespace corvane::haldend {

/// The one key that is known: the search policies or what they stand on have changed.
inline constexpr std::string_view searchPolicyChangedKey =
    "com.velmora.DirectoryService.NotifyTypeStandard:SearchPolicyChanged";

/// Tells listeners of the engine's changes: other programs' edits and the program's own.
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
