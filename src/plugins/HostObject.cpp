#include "plugins/HostObject.h"

namespace corvane::plugins {

// Codes are published under names of their own: plug-ins don't see the directory's headers.
static_assert(CORVANE_ERROR_SESSION_LOCAL_ONLY == halden::ErrorCode::sessionLocalOnly);
static_assert(CORVANE_ERROR_REMOTE_VERSION == halden::ErrorCode::remoteVersion);
static_assert(CORVANE_ERROR_REMOTE_SERVICE_OFF == halden::ErrorCode::remoteServiceOff);
static_assert(CORVANE_ERROR_NODE_UNKNOWN == halden::ErrorCode::nodeUnknown);
static_assert(CORVANE_ERROR_NODE_UNREACHABLE == halden::ErrorCode::nodeUnreachable);
static_assert(CORVANE_ERROR_RECORD_UNKNOWN == halden::ErrorCode::recordUnknown);
static_assert(CORVANE_ERROR_NOT_PERMITTED == halden::ErrorCode::notPermitted);
static_assert(CORVANE_ERROR_PARAMETER == halden::ErrorCode::parameter);
static_assert(CORVANE_ERROR_ATTRIBUTE_UNKNOWN == halden::ErrorCode::attributeUnknown);
static_assert(CORVANE_ERROR_CHANGED_ELSEWHERE == halden::ErrorCode::changedElsewhere);
static_assert(CORVANE_ERROR_STORAGE == halden::ErrorCode::storage);
static_assert(CORVANE_ERROR_CREDENTIALS == halden::ErrorCode::credentials);
static_assert(CORVANE_ERROR_SERVER_NOT_FOUND == halden::ErrorCode::serverNotFound);
static_assert(CORVANE_ERROR_CONNECTION_REFUSED == halden::ErrorCode::connectionRefused);
static_assert(CORVANE_ERROR_CALL_UNKNOWN == halden::ErrorCode::callUnknown);

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

CorvaneObject* newReference(std::shared_ptr<forms::Form> form) {
    return form == nullptr ? nullptr : new CorvaneObject(std::move(form));
}

util::Value valueOf(const CorvaneObject* object) {
    const auto* value = contentOf<util::Value>(object);
    return value == nullptr ? util::Value() : *value;
}

bool holds(const util::Value& whole, const util::Value& part) {
    if (whole.isSameObjectAs(part)) return true;
    for (const auto& element : whole.as<util::Array>().elements())
        if (holds(element, part)) return true;
    for (const auto& [key, entry] : whole.as<util::Dictionary>().entries())
        if (holds(entry, part)) return true;
    return false;
}

halden::Error wrongObject(const std::string& what) {
    return {halden::ErrorCode::parameter, "What the plug-in passed isn't a " + what + ".",
            "The reference is null, or stands for an object of another kind.", ""};
}

void report(const halden::Error& error, CorvaneObject** place) {
    if (place == nullptr) return;
    *place = newReference(util::Dictionary{{"code", error.code},
                                           {"description", error.description},
                                           {"reason", error.reason},
                                           {"recovery", error.recovery}});
}

} // namespace corvane::plugins
