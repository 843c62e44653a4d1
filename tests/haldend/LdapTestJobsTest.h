#pragma once

#include <gmock/gmock.h>

#include "haldend/LdapServersTest.h"
#include "haldend/TestCertificates.h"
#include "haldend/TestSlapd.h"

namespace corvane::haldend::test {

namespace kind = sdk::ldap::failure;
namespace reportKey = sdk::ldap::reportKey;
inline constexpr auto bound = "cn=admin,dc=example,dc=com";

/// What a test of a server came to.
struct Result {
    util::Dictionary report;
    [[nodiscard]] std::string failure(const char* key) const {
        return report.valueForKey(reportKey::failure).as<util::Dictionary>().textForKey(key);
    }
    [[nodiscard]] std::string kind() const { return failure("kind"); }
    [[nodiscard]] std::string evidence() const { return failure("evidence"); }
    [[nodiscard]] std::string step(const std::string& name, const char* key) const {
        const auto steps = report.valueForKey(reportKey::steps).as<util::Array>();
        for (const auto& value : steps.elements())
            if (value.as<util::Dictionary>().textForKey("step") == name)
                return value.as<util::Dictionary>().textForKey(key);
        return "no such step";
    }
    /// "done done failed skipped …"
    [[nodiscard]] std::string states() const {
        std::string text;
        const auto steps = report.valueForKey(reportKey::steps).as<util::Array>();
        for (const auto& value : steps.elements())
            text += (text.empty() ? "" : " ") + value.as<util::Dictionary>().textForKey("state");
        return text;
    }
};

class Bench : public ServerMachine {
public:
    using ServerMachine::ServerMachine;

    [[nodiscard]] util::Value start(util::ValueMap values, util::ValueMap others = {{"kind", "test"}}) const {
        if (!values.contains(serverKey::addresses))
            values.emplace(serverKey::addresses, util::Array{"localhost"});
        for (const auto* key : {serverKey::connectTimeout, serverKey::searchTimeout})
            if (!values.contains(key)) values.emplace(key, 1);
        others.emplace("clearPassword", true); // most tests are about something else than encryption
        others.emplace("server", util::Dictionary(std::move(values)));
        const auto answer = ask(serverCall::startTest, util::Dictionary(std::move(others)));
        EXPECT_EQ(answer.error.code, 0) << answer.error.reason;
        return answer.values.valueForKey("job");
    }
    [[nodiscard]] Answer about(int code, const util::Value& job) const {
        return ask(code, util::Dictionary{{"job", job}});
    }
    [[nodiscard]] Result finished(const util::Value& job) const {
        for (int i = 0; i < 1000; ++i) {
            const auto report = about(serverCall::testReport, job).values;
            if (report.isNull() || report.valueForKey(reportKey::finished) == util::Value(true))
                return {report};
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        ADD_FAILURE() << "the check doesn't end";
        return {};
    }
    [[nodiscard]] Result tried(util::ValueMap values, util::ValueMap others = {{"kind", "test"}}) const {
        return finished(start(std::move(values), std::move(others)));
    }
};

inline util::ValueMap plain(int port, util::ValueMap others = {}) {
    others.emplace(serverKey::security, "none");
    others.emplace(serverKey::port, port);
    others.emplace(serverKey::baseDN, "dc=example,dc=com");
    return others;
}

inline util::ValueMap encrypted(int port, const char* security, const std::string& authority) {
    return {{serverKey::port, port},
            {serverKey::security, security},
            {serverKey::caFile, authority},
            {serverKey::baseDN, "dc=example,dc=com"}};
}

inline void expectClear(const Result& result, const char* wanted) {
    EXPECT_EQ(result.kind(), wanted) << result.failure("cause") << " " << result.evidence();
    for (const auto* key : {"cause", "evidence", "nextStep"})
        EXPECT_FALSE(result.failure(key).empty()) << wanted << " lacks " << key;
}

} // namespace corvane::haldend::test
