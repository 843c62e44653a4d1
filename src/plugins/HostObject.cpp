#include "plugins/HostObject.h"

namespace corvane::plugins {

CorvaneObject* newReference(const util::Value& value) {
    return value.isNull() ? nullptr : new CorvaneObject(value);
}

CorvaneObject* newReference(HostSession session) {
    return session.session == nullptr ? nullptr : new CorvaneObject(std::move(session));
}

CorvaneObject* newReference(HostNode node) {
    return node.node == nullptr ? nullptr : new CorvaneObject(std::move(node));
}

CorvaneObject* newReference(std::shared_ptr<platform::Authorization> authorization) {
    return authorization == nullptr ? nullptr : new CorvaneObject(std::move(authorization));
}

CorvaneObject* newReference(std::shared_ptr<toolkit::Formatter> formatter) {
    return formatter == nullptr ? nullptr : new CorvaneObject(std::move(formatter));
}

util::Value valueOf(const CorvaneObject* object) {
    const auto* value = contentOf<util::Value>(object);
    return value == nullptr ? util::Value() : *value;
}

void report(const halden::Error& error, CorvaneObject** place) {
    if (place == nullptr) return;
    *place = newReference(util::Dictionary{{"code", error.code},
                                           {"description", error.description},
                                           {"reason", error.reason},
                                           {"recovery", error.recovery}});
}

} // namespace corvane::plugins
