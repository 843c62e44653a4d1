#include "haldend/EmbeddedFramework.h"

#include "haldend/nodes/NodeFactory.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

/// Each question has the engine in hand while it is answered.
class EmbeddedSession final : public halden::Session {
public:
    explicit EmbeddedSession(std::shared_ptr<Engine> engine) : engine_(std::move(engine)) {}

    [[nodiscard]] std::shared_ptr<halden::Node> nodeWithType(halden::NodeType type,
                                                             halden::Error* error) override {
        const Engine::Hold hold(*engine_);
        return guarded<std::shared_ptr<halden::Node>>(error, nullptr,
                                                      [&] { return nodeOfType(engine_, type); });
    }
    [[nodiscard]] std::shared_ptr<halden::Node> nodeWithName(const std::string& name,
                                                             halden::Error* error) override {
        const Engine::Hold hold(*engine_);
        return guarded<std::shared_ptr<halden::Node>>(error, nullptr,
                                                      [&] { return nodeNamed(engine_, name); });
    }
    [[nodiscard]] util::Array nodeNames(halden::Error* error) override {
        const Engine::Hold hold(*engine_);
        return guarded<util::Array>(error, {},
                                    [&] { return util::Array::ofTexts(haldend::nodeNames(*engine_)); });
    }

private:
    std::shared_ptr<Engine> engine_;
};

} // namespace

EmbeddedFramework::EmbeddedFramework(std::shared_ptr<Engine> engine)
    : session_(std::make_shared<EmbeddedSession>(std::move(engine))) {}

} // namespace corvane::haldend
