#include "haldend/engine/Engine.h"

#include "haldend/storage/Failure.h"

namespace corvane::haldend {
Engine::Engine(const std::string& root, const platform::PropertyListCodec& codec, util::ProcessLog& log)
    : codec_(codec), log_(log), machine_(MachineFolder(root), codec, log) {
    machine_.setChangeListener([this] {
        for (std::size_t i = 0; i < listeners_.size(); ++i)
            listeners_[i]();
    });
}

void Engine::requireConfigureRight(util::BytesView form) const {
    if (rights_.permits(form, configureRight)) return;
    throw Failure(
        halden::ErrorCode::notPermitted, "The directory configuration may not be changed.",
        "The authorization that came with the request no longer holds the right to do so, or never did.",
        "Open the lock and try again.");
}

} // namespace corvane::haldend
