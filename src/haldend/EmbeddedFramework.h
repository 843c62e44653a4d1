#pragma once

#include <memory>

#include "halden/Session.h"
#include "haldend/engine/Engine.h"

namespace corvane::haldend {

/// The directory framework on an engine in this process. One default session for the engine's life.
class EmbeddedFramework final : public halden::Framework {
public:
    explicit EmbeddedFramework(std::shared_ptr<Engine> engine);
    [[nodiscard]] std::shared_ptr<halden::Session> defaultSession() override { return session_; }

private:
    std::shared_ptr<halden::Session> session_;
};

} // namespace corvane::haldend
