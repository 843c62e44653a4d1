#include "plugins/PluginAPIImplementor.h"

namespace corvane::plugins {

void PluginAPIImplementor::setAuthorizationForHaldenCAction(HaldenCAction& action) {
    if (!isRemote()) {
        action.setAuth(authorization());
        return;
    }
    util::AuthorizationExternalForm form;
    // The status isn't looked at: an action that gets zeros is refused by the server, which says so.
    (void)makeAuthExternalForm(form);
    action.setRemoteAuthExtForm(form);
}

std::shared_ptr<formatters::NumberEnforcer> PluginAPIImplementor::numberFormatEnforcer() {
    return std::make_shared<formatters::NumberEnforcer>(host_.strings());
}

std::shared_ptr<formatters::IPv4AddressFormatter> PluginAPIImplementor::ipv4AddressFormatter() {
    return std::make_shared<formatters::IPv4AddressFormatter>(host_, host_.strings());
}

std::shared_ptr<formatters::ValidCharacterFormatter>
PluginAPIImplementor::validCharacterFormatter(std::shared_ptr<const util::CharacterSet> characters) {
    auto formatter = std::make_shared<formatters::ValidCharacterFormatter>(host_);
    formatter->setValidCharacterSet(std::move(characters));
    return formatter;
}

} // namespace corvane::plugins
