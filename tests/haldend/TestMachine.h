#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "haldend/EmbeddedAuthorizationService.h"
#include "haldend/EmbeddedFramework.h"
#include "haldend/engine/Engine.h"
#include "haldend/storage/MachineFolder.h"
#include "plist/PropertyListCodec.h"

namespace corvane::haldend::test {

/// A temporary folder that goes with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        auto pattern = (std::filesystem::temp_directory_path() / "corvane-test-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
        path_ = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string read(const std::string& relative) const {
        std::ifstream stream(path_ + "/" + relative, std::ios::binary);
        std::ostringstream text;
        text << stream.rdbuf();
        return text.str();
    }
    void write(const std::string& relative, const std::string& text) const {
        const auto path = std::filesystem::path(path_) / relative;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }
    [[nodiscard]] bool has(const std::string& relative) const {
        return std::filesystem::exists(path_ + "/" + relative);
    }

private:
    std::string path_;
};

class RecordedLog final : public util::ProcessLog {
public:
    void log(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

inline const char* const plainNsswitch =
    "# names\npasswd:         files systemd\ngroup:          files systemd\n"
    "shadow:         files\nhosts:          files dns\nnetgroup:       nis\n";
inline const char* const twoDirectories =
    "# our directories\n[sssd]\nservices = nss, pam\ndomains = staff, guests\n\n[domain/staff]\n# "
    "people\nid_provider = ldap\n"
    "ldap_uri = ldap://ldap.example.com\nldap_search_base = "
    "dc=example,dc=com\n\n[domain/guests]\nid_provider = ldap\n"
    "ldap_uri = ldap://guests.example.com:1389\n\n[domain/corp.example.com]\nid_provider = ad\n";

inline const std::string staffNode = "/LDAP/ldap.example.com";
inline const std::string guestsNode = "/LDAP/guests.example.com:1389";
inline const std::string corpNode = "/AD/corp.example.com";

/// A machine folder with an engine on it and an authorization that may change it.
class TestMachine {
public:
    explicit TestMachine(const std::string& sssd = twoDirectories,
                         const std::string& nsswitch = plainNsswitch) {
        folder.write("etc/nsswitch.conf", nsswitch);
        if (!sssd.empty()) folder.write("etc/sssd/sssd.conf", sssd);
        folder.write("etc/passwd",
                     "root:x:0:0:root:/root:/bin/bash\nalice:x:1000:1000:Alice Ash,,,:/home/alice:/bin/sh\n");
        folder.write("etc/group", "root:x:0:\nstaff:x:50:alice,root\n");
        folder.write("etc/os-release", "NAME=\"Debian\"\nVERSION_ID=\"12\"\n");
        start();
    }

    /// A new run of the service on the same folder.
    void start() {
        authorization.reset();
        service.reset();
        framework.reset();
        engine = std::make_shared<Engine>(folder.path(), codec, log);
        framework = std::make_unique<EmbeddedFramework>(engine);
        service = std::make_unique<EmbeddedAuthorizationService>(engine);
        authorization = service->createAuthorization();
        (void)authorization->obtainRights(
            {{std::string(configureRight), "", 0}, {std::string(preferencesRight), "", 0}}, 19);
    }

    [[nodiscard]] util::Bytes form() const {
        util::AuthorizationExternalForm made;
        EXPECT_EQ(service->makeExternalForm(authorization->authorizationRef(), made), 0);
        return {made.bytes.begin(), made.bytes.end()};
    }
    [[nodiscard]] std::shared_ptr<halden::Node> node(halden::NodeType type) const {
        return framework->defaultSession()->nodeWithType(type, nullptr);
    }
    [[nodiscard]] std::shared_ptr<halden::Node> search() const {
        return node(halden::NodeType::authenticationSearchNode);
    }
    [[nodiscard]] std::shared_ptr<halden::Node> contacts() const {
        return node(halden::NodeType::contactsSearchNode);
    }

    /// The error of a call, code 0 when it worked.
    halden::Error call(const std::shared_ptr<halden::Node>& target, int code,
                       const util::Bytes& payload = {}) const {
        auto request = form();
        request.insert(request.end(), payload.begin(), payload.end());
        halden::Error error;
        const auto reply = target->customCall(code, request, &error);
        EXPECT_EQ(reply.has_value(), !error);
        return error;
    }
    halden::Error setCustom(const std::shared_ptr<halden::Node>& target,
                            const std::vector<std::string>& names) const {
        return call(target, 444, *codec.binary(util::Array::ofTexts(names)));
    }
    [[nodiscard]] std::vector<std::string> path(const std::shared_ptr<halden::Node>& target,
                                                std::string_view attribute) const {
        return target->nodeDetails(std::nullopt, nullptr).valueForKey(attribute).as<util::Array>().texts();
    }
    [[nodiscard]] std::string mode(const std::shared_ptr<halden::Node>& target) const {
        const auto values = path(target, halden::attribute::searchPolicy);
        return values.empty() ? "" : values.front();
    }

    TemporaryFolder folder;
    plist::PropertyListCodec codec;
    RecordedLog log;
    std::shared_ptr<Engine> engine;
    std::unique_ptr<EmbeddedFramework> framework;
    std::unique_ptr<EmbeddedAuthorizationService> service;
    std::shared_ptr<platform::Authorization> authorization;
};

} // namespace corvane::haldend::test
