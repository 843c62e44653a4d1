#pragma once

#include <memory>
#include <string>
#include <vector>

#include "haldend/EmbeddedAuthorizationService.h"
#include "haldend/EmbeddedFramework.h"
#include "haldend/engine/Engine.h"
#include "oracle/Files.h"
#include "plist/PropertyListCodec.h"

namespace corvane::oracle {

/// A machine folder under the directory service, worked by the numbered calls that the window makes. The
/// calls return the service's error, whose code is 0 when it did what was asked.
class WorkedMachine {
public:
    explicit WorkedMachine(std::string folder);

    /// The machine's files without the service's own state.
    [[nodiscard]] Files files() const;

    /// Of the authentication policy: 111 automatic, 222 local, 333 custom.
    [[nodiscard]] int mode() const;
    /// The directories that the window shows as asked, in order, without the machine's own files. None, and
    /// the error set, when the policy can't be read.
    [[nodiscard]] std::vector<std::string> path(halden::Error& error) const;
    /// Those that Automatic would ask.
    [[nodiscard]] std::vector<std::string> automaticPath() const;

    halden::Error setMode(int mode);
    halden::Error setCustom(const std::vector<std::string>& nodes);
    /// The contacts policy: a list of its own, then the mode.
    halden::Error setContactsList(const std::vector<std::string>& nodes);
    halden::Error setContactsMode(int mode);
    /// Switches the connector LDAP off, or on again.
    halden::Error flipLdap();

    /// The names of the LDAP servers that the service knows.
    [[nodiscard]] std::vector<std::string> servers() const;
    /// The node of one of them, "" when it has none.
    [[nodiscard]] std::string nodeOfServer(const std::string& name) const;
    halden::Error addServer(const std::string& name, const std::string& address);
    halden::Error removeServer(const std::string& name);

private:
    class Log final : public util::ProcessLog {
    public:
        void log(std::string_view) override {}
    };

    [[nodiscard]] std::shared_ptr<halden::Node> node(halden::NodeType type) const;
    [[nodiscard]] std::vector<std::string> detail(std::string_view key) const;
    halden::Error call(halden::NodeType type, int code, const util::Bytes& payload = {});
    halden::Error writeServers(const util::Array& put, const util::Array& remove);
    [[nodiscard]] util::Dictionary listing() const;

    std::string folder_;
    plist::PropertyListCodec codec_;
    Log log_;
    std::shared_ptr<haldend::Engine> engine_;
    mutable haldend::EmbeddedFramework framework_; ///< it makes its session when first asked
    haldend::EmbeddedAuthorizationService service_;
    std::shared_ptr<platform::Authorization> authorization_;
};

} // namespace corvane::oracle
