#pragma once

#include <memory>
#include <string>

#include "directory/Authorizer.h"
#include "directory/Connection.h"
#include "directory/MachineFacts.h"
#include "formatters/IPv4AddressFormatter.h"
#include "formatters/NumberEnforcer.h"
#include "formatters/ValidCharacterFormatter.h"
#include "platform/PropertyListCodec.h"
#include "plugins/HostParts.h"
#include "plugins/PluginSurroundings.h"
#include "util/ProcessLog.h"

namespace corvane::plugins {

/// An object of a plug-in's that will run something against the directory service.
class HaldenCAction {
public:
    virtual ~HaldenCAction() = default;
    virtual void setAuth(std::shared_ptr<platform::Authorization> authorization) = 0;
    /// Borrowed for the length of the call.
    virtual void setRemoteAuthExtForm(const util::AuthorizationExternalForm& form) = 0;
};

/// The one object through which plug-ins call the host: five parts of the program, each with the operations
/// that plug-ins may use. It holds no state of its own: every answer is that of the moment, of the window's
/// present connection. What comes out of it is the host's, and shared, except the formatters. Main thread.
class PluginAPIImplementor {
public:
    /// The parts, which outlive this object.
    struct Parts {
        directory::Connection& connection;
        directory::Authorizer& authorization;
        HostPolicies& policies;
        HostServices& services;
        directory::MachineFacts& machine;
    };
    /// What the formatters and the boundary itself work with; outlives this object and the formatters.
    struct Tools {
        util::ProcessLog& log;
        const platform::LocalizedStrings& strings;
        const platform::PropertyListCodec& propertyLists;
        formatters::ValidCharacterFormatter::Needs& beep;
        forms::FormPresenter& formPresenter;
        platform::RunLoop& runLoop;
        BackgroundCalls& background;
    };

    PluginAPIImplementor(Parts parts, Tools tools) : parts_(parts), tools_(tools) {}

    [[nodiscard]] directory::Connection& connection() { return parts_.connection; }
    [[nodiscard]] directory::Authorizer& authorization() { return parts_.authorization; }
    [[nodiscard]] HostPolicies& policies() { return parts_.policies; }
    [[nodiscard]] HostServices& services() { return parts_.services; }
    [[nodiscard]] directory::MachineFacts& machine() { return parts_.machine; }

    /// Hands the action the authorization itself, or, while a remote server is configured, its external form:
    /// all zeros when that could not be made.
    void setAuthorizationForHaldenCAction(HaldenCAction& action);

    /// New formatters, the caller's own.
    [[nodiscard]] std::shared_ptr<formatters::NumberEnforcer> numberFormatEnforcer();
    [[nodiscard]] std::shared_ptr<formatters::IPv4AddressFormatter> ipv4AddressFormatter();
    [[nodiscard]] std::shared_ptr<formatters::ValidCharacterFormatter>
    validCharacterFormatter(std::shared_ptr<const util::CharacterSet> characters);

    void log(const std::string& line) { tools_.log.log(line); }
    [[nodiscard]] const platform::PropertyListCodec& propertyLists() { return tools_.propertyLists; }
    /// Windows and time for what plug-ins begin.
    [[nodiscard]] PluginSurroundings surroundings() {
        return {tools_.formPresenter, {tools_.beep, tools_.strings}, tools_.runLoop, tools_.background};
    }

private:
    Parts parts_;
    Tools tools_;
};

} // namespace corvane::plugins
