#include "plugins/PluginAPIImplementor.h"

namespace corvane::plugins {

void PluginAPIImplementor::setAuthorizationForHaldenCAction(HaldenCAction& action) {
    if (!connection().isRemote()) {
        action.setAuth(authorization().authorization());
        return;
    }
    util::AuthorizationExternalForm form;
    // The status isn't looked at: an action that gets zeros is refused by the server, which says so.
    (void)authorization().makeAuthExternalForm(form);
    action.setRemoteAuthExtForm(form);
}

std::shared_ptr<formatters::NumberEnforcer> PluginAPIImplementor::numberFormatEnforcer() {
    return std::make_shared<formatters::NumberEnforcer>(tools_.strings);
}

std::shared_ptr<formatters::IPv4AddressFormatter> PluginAPIImplementor::ipv4AddressFormatter() {
    return std::make_shared<formatters::IPv4AddressFormatter>(tools_.beep, tools_.strings);
}

std::shared_ptr<formatters::ValidCharacterFormatter>
PluginAPIImplementor::validCharacterFormatter(std::shared_ptr<const util::CharacterSet> characters) {
    auto formatter = std::make_shared<formatters::ValidCharacterFormatter>(tools_.beep);
    formatter->setValidCharacterSet(std::move(characters));
    return formatter;
}

} // namespace corvane::plugins
