#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "halden/Session.h"
#include "platform/PropertyListCodec.h"
#include "util/AuthorizationExternalForm.h"

namespace corvane::contract {

/// A directory service to try the contract on, in a state that every implementation can be put into: the local
/// list is "/Local/Accounts" and "/BSD/Files"; there is a directory `directoryNode`; both policies are Local
/// with empty custom lists; the connector LDAP is on; the local node has a user "alice".
class FrameworkUnderTest {
public:
    virtual ~FrameworkUnderTest() = default;
    virtual halden::Framework& framework() = 0;
    /// The external form of an authorization that may change the configuration.
    virtual util::Bytes grantedForm() = 0;
    virtual const platform::PropertyListCodec& codec() = 0;
    virtual std::string directoryNode() = 0;
};

using FrameworkFactory = std::function<std::unique_ptr<FrameworkUnderTest>()>;

/// One implementation of the framework: what the suite is instantiated with.
struct FrameworkCase {
    std::string name;
    FrameworkFactory make;
};

/// What every `halden::Framework` with its sessions, nodes, records and queries must do. Instantiate with
///     INSTANTIATE_TEST_SUITE_P(Name, FrameworkContract, testing::Values(FrameworkCase{...}), caseName);
class FrameworkContract : public testing::TestWithParam<FrameworkCase> {
protected:
    void SetUp() override {
        service_ = GetParam().make();
        session_ = service_->framework().defaultSession();
        ASSERT_NE(session_, nullptr);
    }

    [[nodiscard]] std::shared_ptr<halden::Node> node(halden::NodeType type) const { return session_->nodeWithType(type, nullptr); }
    [[nodiscard]] std::shared_ptr<halden::Node> search() const { return node(halden::NodeType::authenticationSearchNode); }
    [[nodiscard]] std::shared_ptr<halden::Node> contacts() const { return node(halden::NodeType::contactsSearchNode); }
    [[nodiscard]] std::vector<std::string> detail(const std::shared_ptr<halden::Node>& of, std::string_view key) const {
        return of->nodeDetails(std::nullopt, nullptr).valueForKey(key).as<util::Array>().texts();
    }
    /// The error code of a call with an authorization in front; 0 when it worked.
    int call(const std::shared_ptr<halden::Node>& target, int code, const util::Bytes& payload = {}) const {
        auto request = service_->grantedForm();
        request.insert(request.end(), payload.begin(), payload.end());
        halden::Error error;
        (void)target->customCall(code, request, &error);
        return error.code;
    }
    int setCustom(const std::shared_ptr<halden::Node>& target, const std::vector<std::string>& names) const {
        return call(target, 444, *service_->codec().binary(util::Array::ofTexts(names)));
    }
    [[nodiscard]] halden::RecordList records(const std::shared_ptr<halden::Node>& of, std::string_view type,
                                             halden::MatchType match = halden::MatchType::any, const std::string& text = "") const {
        const halden::QueryParameters parameters{{std::string(type)},
                                                 match == halden::MatchType::any ? "" : std::string(halden::attribute::recordName),
                                                 match, {text}, {std::string(halden::attribute::all)}, 0};
        const auto query = of->query(parameters, nullptr);
        if (!query) return {};
        return query->results(false, nullptr).value_or(halden::RecordList());
    }

    std::unique_ptr<FrameworkUnderTest> service_;
    std::shared_ptr<halden::Session> session_;
};

inline std::string caseName(const testing::TestParamInfo<FrameworkCase>& info) { return info.param.name; }

} // namespace corvane::contract
