#include "haldend/LdapTestJobsTest.h"

using namespace corvane;
using namespace corvane::haldend::test;
using testing::HasSubstr;

TEST(LdapTestJobs, everythingRight_goesThroughAllStepsAndSaysWhatItSaw) {
    const TestSlapd slapd;
    const Bench machine;
    const auto result = machine.tried(
        plain(slapd.port(), {{serverKey::bindDN, bound}, {serverKey::password, password("s3cret#;x")}}),
        {{"kind", "test"}, {"user", "odd*(name)"}, {"group", "makers"}});
    EXPECT_EQ(result.kind(), "") << result.evidence();
    EXPECT_EQ(result.states(), "done skipped done done done done");
    EXPECT_THAT(result.step("bind", "detail"), HasSubstr(bound));
    EXPECT_THAT(result.step("user", "detail"), HasSubstr("number 5002"));
    EXPECT_THAT(result.step("group", "detail"), HasSubstr("cn=makers,dc=example,dc=com"));
}

TEST(LdapTestJobs, nobodyNamedAndNoBaseEntered_findsTheServersBaseAndAnyUser) {
    const TestSlapd slapd;
    const Bench machine;
    const auto result = machine.tried(plain(slapd.port(), {{serverKey::baseDN, ""}}));
    EXPECT_EQ(result.kind(), "") << result.evidence();
    EXPECT_THAT(result.step("base", "detail"), HasSubstr("dc=example,dc=com"));
}

TEST(LdapTestJobs, bothWaysToEncrypt_trustTheAuthorityThatIsChosen) {
    const TestCertificates certificates;
    const TestSlapd slapd(0, "sizelimit unlimited", true, certificates.folder());
    const Bench machine;
    for (const auto* security : {"startTLS", "ldaps"}) {
        const int port = std::string(security) == "ldaps" ? slapd.tlsPort() : slapd.port();
        const auto result = machine.tried(encrypted(port, security, certificates.authority()));
        EXPECT_EQ(result.kind(), "") << security << result.evidence();
        EXPECT_THAT(result.step("encrypt", "detail"), HasSubstr("Test Authority")) << security;
    }
}

TEST(LdapTestJobs, certificateForAnAddress_isTakenForThatAddressAlone) {
    const TestSlapd slapd(0, "sizelimit unlimited", true);
    const Bench machine;
    const auto at = [&](const char* address) {
        auto values = encrypted(slapd.tlsPort(), "ldaps", slapd.certificate());
        values.emplace(serverKey::addresses, util::Array{address});
        return machine.tried(std::move(values));
    };
    EXPECT_EQ(at("127.0.0.1").kind(), "");
    const auto other = at("localhost");
    expectClear(other, kind::wrongName);
    EXPECT_THAT(other.evidence(), HasSubstr("made out for 127.0.0.1"));
}

TEST(LdapTestJobs, certificateOfAnotherAuthority_isUntrustedAndNamed) {
    const TestCertificates certificates;
    const TestCertificates others;
    const TestSlapd slapd(0, "sizelimit unlimited", true, certificates.folder());
    const Bench machine;
    for (const auto& authority : {others.authority(), std::string()}) {
        const auto result = machine.tried(encrypted(slapd.port(), "startTLS", authority));
        expectClear(result, kind::untrusted);
        EXPECT_THAT(result.evidence(), HasSubstr("CN=Test Authority"));
    }
    const auto unreadable = machine.tried(encrypted(slapd.port(), "startTLS", "/nowhere/ca.pem"));
    expectClear(unreadable, kind::caFileUnreadable);
    EXPECT_THAT(unreadable.evidence(), HasSubstr("No such file"));
    const auto keyInstead = certificates.folder() + "/key.pem";
    expectClear(machine.tried(encrypted(slapd.port(), "startTLS", keyInstead)), kind::caFileUnreadable);
}

TEST(LdapTestJobs, expiredCertificate_isToldWithItsEnd) {
    const TestCertificates certificates("localhost", -TestCertificates::day);
    const TestSlapd slapd(0, "sizelimit unlimited", true, certificates.folder());
    const auto result = Bench().tried(encrypted(slapd.tlsPort(), "ldaps", certificates.authority()));
    expectClear(result, kind::expired);
    EXPECT_THAT(result.evidence(), HasSubstr("valid from"));
    EXPECT_EQ(result.states(), "done failed skipped skipped skipped skipped");
}

TEST(LdapTestJobs, certificateThatIsNotValidYet_isToldFromAnOldOne) {
    const TestCertificates certificates("localhost", 2 * TestCertificates::day, TestCertificates::day);
    const TestSlapd slapd(0, "sizelimit unlimited", true, certificates.folder());
    const auto result = Bench().tried(encrypted(slapd.tlsPort(), "ldaps", certificates.authority()));
    expectClear(result, kind::expired);
    EXPECT_THAT(result.failure("cause"), HasSubstr("isn't valid yet"));
}

TEST(LdapTestJobs, savedOptionsThatAskForNoCertificate_areFollowedAndTold) {
    const TestSlapd slapd(0, "sizelimit unlimited", true);
    for (const std::string demand : {"never", "allow", "demand"}) {
        const Bench machine("[domain/office]\nid_provider = ldap\nldap_uri = ldaps://localhost:" +
                            std::to_string(slapd.tlsPort()) + "\nldap_tls_reqcert = " + demand + "\n");
        const auto result = machine.tried({{serverKey::name, "office"}});
        EXPECT_EQ(result.kind(), demand == "demand" ? kind::untrusted : "") << demand << result.evidence();
        if (demand != "demand") {
            EXPECT_THAT(result.step("encrypt", "detail"), HasSubstr("ldap_tls_reqcert"));
        }
    }
}

TEST(LdapTestJobs, certificateOfAnotherHost_isToldWithBothNames) {
    const TestCertificates certificates("ldap.example.com");
    const TestSlapd slapd(0, "sizelimit unlimited", true, certificates.folder());
    const auto result = Bench().tried(encrypted(slapd.port(), "startTLS", certificates.authority()));
    expectClear(result, kind::wrongName);
    EXPECT_THAT(result.evidence(), HasSubstr("made out for ldap.example.com"));
    EXPECT_THAT(result.evidence(), HasSubstr("\"localhost\""));
}

TEST(LdapTestJobs, serverThatCannotEncrypt_isToldFromOneThatIsNotTrusted) {
    const TestSlapd slapd;
    const Bench machine;
    expectClear(machine.tried(encrypted(slapd.port(), "startTLS", "")), kind::tlsUnsupported);
    expectClear(machine.tried(encrypted(slapd.port(), "ldaps", "")), kind::tlsUnsupported);
}

TEST(LdapTestJobs, wrongPasswordWrongBaseAndUnknownUser_areThreeDifferentFailures) {
    const TestSlapd slapd;
    const Bench machine;
    const auto wrong = machine.tried(
        plain(slapd.port(), {{serverKey::bindDN, bound}, {serverKey::password, password("hunter2")}}));
    expectClear(wrong, kind::credentials);
    EXPECT_EQ(wrong.evidence().find("hunter2"), std::string::npos);
    expectClear(machine.tried(plain(slapd.port(), {{serverKey::bindDN, bound}})), kind::credentials);
    const auto base = machine.tried(plain(slapd.port(), {{serverKey::baseDN, "dc=example,dc=org"}}));
    expectClear(base, kind::noSuchBase);
    EXPECT_THAT(base.failure("nextStep"), HasSubstr("dc=example,dc=com"));
    const auto user = machine.tried(plain(slapd.port()), {{"kind", "test"}, {"user", "nobody*"}});
    expectClear(user, kind::nothingFound);
    EXPECT_EQ(user.states(), "done skipped done done failed skipped");
    expectClear(machine.tried(plain(slapd.port(), {{serverKey::schema, "ad"}})), kind::nothingFound);
}

TEST(LdapTestJobs, anonymousBindNotAllowed_isNotTakenForAWrongPassword) {
    const TestSlapd slapd(0, "disallow bind_anon");
    expectClear(Bench().tried(plain(slapd.port())), kind::bindRefused);
}

TEST(LdapTestJobs, closedPortAndUnknownHost_areTold) {
    const Bench machine;
    expectClear(machine.tried(plain(unusedPort())), kind::refused);
    expectClear(machine.tried(plain(389, {{serverKey::addresses, util::Array{"nowhere.invalid"}}})),
                kind::unknownHost);
}

TEST(LdapTestJobs, hostThatSaysNothingAtAll_isToldFromOneThatHangs) {
    const SilentServer silent(0);
    const int first = silent.connection(); // whoever comes behind it waits for room
    const int second = silent.connection();
    const auto result =
        Bench().tried(plain(silent.port(), {{serverKey::addresses, util::Array{"127.0.0.1"}}}));
    for (const int socket : {first, second})
        ::close(socket);
    expectClear(result, kind::timeout);
    EXPECT_THAT(result.evidence(), HasSubstr("within 1 second."));
    EXPECT_EQ(result.states(), "failed skipped skipped skipped skipped skipped");
}

TEST(LdapTestJobs, addressThatAPersonWroteOtherwise_isLeftOutAndAloneRefused) {
    const TestSlapd slapd;
    const auto port = std::to_string(slapd.port());
    const std::string section = "[domain/office]\nid_provider = ldap\nldap_uri = ";
    const Bench mixed(section + "ldap://localhost:" + port + ", ldaps://127.9.9.9\n");
    EXPECT_EQ(mixed.tried({{serverKey::name, "office"}}).kind(), "");
    const Bench unnamed(section + "_srv_\n");
    const auto answer =
        unnamed.ask(serverCall::startTest, util::Dictionary{{"kind", "test"}, {"server", server("office")}});
    EXPECT_THAT(answer.error.reason, HasSubstr("DNS"));
}

TEST(LdapTestJobs, savedNamesBasesAndFolderOfAuthorities_areUsedAsBySssd) {
    const TestCertificates certificates;
    const TestSlapd slapd(0, "sizelimit unlimited", true, certificates.folder());
    const TemporaryFolder authorities;
    std::filesystem::copy(certificates.authority(), authorities.path() + "/ca.pem");
    const Bench machine("[domain/office]\nid_provider = ldap\nldap_uri = ldaps://localhost:" +
                        std::to_string(slapd.tlsPort()) + "\nldap_tls_cacertdir = " + authorities.path() +
                        "\nldap_user_object_class = inetOrgPerson\nldap_user_name = mail\n"
                        "ldap_group_search_base = ou=people,dc=example,dc=com\n");
    const auto result =
        machine.tried({{serverKey::name, "office"}},
                      {{"kind", "test"}, {"user", "bertha@example.com"}, {"group", "makers"}});
    EXPECT_EQ(result.states(), "done done done done done failed") << result.evidence();
    EXPECT_THAT(result.evidence(), HasSubstr("ou=people,dc=example,dc=com"));
}

TEST(LdapTestJobs, secondAddress_isTakenWhereTheFirstDoesNotAnswer) {
    const TestSlapd slapd;
    const auto result =
        Bench().tried(plain(slapd.port(), {{serverKey::addresses, util::Array{"127.9.9.9", "127.0.0.1"}}}));
    EXPECT_EQ(result.kind(), "") << result.evidence();
    EXPECT_THAT(result.step("connect", "detail"), HasSubstr("127.0.0.1, port"));
    EXPECT_THAT(result.step("connect", "detail"), HasSubstr("127.9.9.9, port"));
}

TEST(LdapTestJobs, serverThatHangsAfterTheConnection_isToldInEachSecurityMode) {
    const SilentServer silent;
    const Bench machine;
    std::vector<util::Value> jobs;
    for (const auto* security : {"none", "startTLS", "ldaps"})
        jobs.push_back(machine.start(encrypted(silent.port(), security, "")));
    for (const auto& job : jobs) {
        const auto result = machine.finished(job);
        expectClear(result, kind::timeout);
        EXPECT_EQ(result.step("connect", "state"), "done");
    }
}

TEST(LdapTestJobs, bases_areThoseOfTheServerWithoutAnAccount) {
    const TestSlapd slapd(0, "disallow bind_anon");
    const auto result = Bench().tried(plain(slapd.port()), {{"kind", "bases"}});
    EXPECT_EQ(result.kind(), "") << result.evidence();
    EXPECT_EQ(result.states(), "done skipped skipped done");
    EXPECT_EQ(result.report.valueForKey(reportKey::bases).as<util::Array>().texts(),
              std::vector<std::string>{"dc=example,dc=com"});
    EXPECT_EQ(result.report.textForKey(reportKey::defaultBase), "dc=example,dc=com");
}

TEST(LdapTestJobs, baseThatTheServerPrefers_isTheDefaultOne) {
    const TemporaryFolder folder;
    folder.write("root.ldif", "dn:\ndefaultNamingContext: dc=preferred\n\n");
    const TestSlapd slapd(0, "attributetype ( 1.3.6.1.4.1.55555.1 NAME 'defaultNamingContext' SYNTAX "
                             "1.3.6.1.4.1.1466.115.121.1.12 )\nrootDSE " +
                                 folder.path() + "/root.ldif");
    const auto result = Bench().tried(plain(slapd.port()), {{"kind", "bases"}});
    EXPECT_EQ(result.report.textForKey(reportKey::defaultBase), "dc=preferred") << result.evidence();
    EXPECT_EQ(result.report.valueForKey(reportKey::bases).as<util::Array>().texts(),
              std::vector<std::string>{"dc=example,dc=com"});
}

TEST(LdapTestJobs, finished_isForgottenWithItsReport) {
    const Bench machine;
    const auto job = machine.start(plain(unusedPort()));
    expectClear(machine.finished(job), kind::refused);
    const auto again = machine.about(serverCall::testReport, job);
    EXPECT_EQ(again.error.code, halden::ErrorCode::parameter);
    EXPECT_THAT(again.error.description, HasSubstr("no longer exists"));
}

TEST(LdapTestJobs, endsThatNobodyAsksAbout_makeRoomTheOldestFirst) {
    const Bench machine;
    const auto port = unusedPort();
    const util::Dictionary request{
        {"kind", "test"},
        {"server", util::Dictionary(plain(port, {{serverKey::addresses, util::Array{"127.0.0.1"}}}))}};
    std::vector<util::Value> jobs;
    while (jobs.size() < 20)
        if (const auto answer = machine.ask(serverCall::startTest, request); answer.error.code == 0)
            jobs.push_back(answer.values.valueForKey("job"));
    EXPECT_EQ(machine.about(serverCall::testReport, jobs.front()).error.code, halden::ErrorCode::parameter);
    expectClear(machine.finished(jobs.back()), kind::refused);
}

TEST(LdapTestJobs, passwordThatOnlySssdCanRead_isNotTakenForAMissingOne) {
    const TestSlapd slapd;
    const Bench machine("[domain/office]\nid_provider = ldap\nldap_uri = ldap://localhost:" +
                        std::to_string(slapd.port()) + "\nldap_default_bind_dn = " + bound +
                        "\nldap_default_authtok_type = obfuscated_password\nldap_default_authtok = AAAA\n");
    const auto result = machine.tried({{serverKey::name, "office"}});
    expectClear(result, kind::credentials);
    EXPECT_THAT(result.evidence(), HasSubstr("only SSSD can read"));
    EXPECT_EQ(
        machine.tried({{serverKey::name, "office"}, {serverKey::password, password("s3cret#;x")}}).kind(),
        "");
}

TEST(LdapTestJobs, savedPassword_isUsedWhereNoneIsEntered) {
    const TestSlapd slapd;
    const Bench machine("");
    auto saved = plain(slapd.port(), {{serverKey::bindDN, bound},
                                      {serverKey::password, password("s3cret#;x")},
                                      {serverKey::addresses, util::Array{"127.0.0.1"}}});
    saved.emplace(serverKey::name, "office");
    ASSERT_EQ(machine.write({util::Dictionary(std::move(saved))}).error.code, 0);
    EXPECT_EQ(machine.tried({{serverKey::name, "office"}}).kind(), "");
    EXPECT_EQ(machine.tried({{serverKey::name, "new"}, {serverKey::replaces, "office"}}).kind(), "");
    expectClear(machine.tried({{serverKey::name, "office"}, {serverKey::password, password("")}}),
                kind::credentials);
}

TEST(LdapTestJobs, cancelled_isForgottenAtOnceThoughTheServerHangs) {
    const SilentServer silent;
    const Bench machine;
    const auto slow =
        plain(silent.port(), {{serverKey::searchTimeout, 100}, {serverKey::connectTimeout, 100}});
    for (int i = 0; i < 4; ++i) {
        const auto job = machine.start(slow);
        EXPECT_EQ(machine.about(serverCall::testReport, job).values.valueForKey(reportKey::finished),
                  util::Value(false));
        const auto cancelled = machine.about(serverCall::cancelTest, job);
        EXPECT_EQ(cancelled.error.code, 0);
        EXPECT_FALSE(cancelled.values.isNull());
        EXPECT_EQ(machine.about(serverCall::testReport, job).error.code, halden::ErrorCode::parameter);
        EXPECT_EQ(machine.about(serverCall::cancelTest, job).error.code, 0) << "once more is harmless";
    }
    ServerMachine::Answer answer; // those that were given up make room for others
    do
        answer = machine.ask(serverCall::startTest,
                             util::Dictionary{{"kind", "test"}, {"server", newServer("", "localhost")}});
    while (answer.error.code != 0);
    EXPECT_FALSE(answer.values.valueForKey("job").isNull());
}

TEST(LdapTestJobs, engineThatGoesWithChecksUnderWay_doesNotWaitForTheServer) {
    const SilentServer silent;
    ::alarm(50); // ends the test if it does
    {
        const Bench machine;
        for (int i = 0; i < 4; ++i)
            (void)machine.start(plain(silent.port(), {{serverKey::searchTimeout, 100}}));
        util::ValueMap fifth = plain(silent.port(), {{serverKey::addresses, util::Array{"localhost"}}});
        const auto answer = machine.ask(
            serverCall::startTest, util::Dictionary{{"kind", "test"}, {"server", util::Dictionary(fifth)}});
        EXPECT_EQ(answer.error.code, halden::ErrorCode::parameter);
        EXPECT_THAT(answer.error.reason, HasSubstr("tried already"));
    }
    ::alarm(0);
}

TEST(LdapTestJobs, requestThatIsWrong_isRefusedBeforeAnythingIsTried) {
    const Bench machine;
    const auto refused = [&](util::Dictionary values) {
        const auto answer = machine.ask(serverCall::startTest, values);
        EXPECT_EQ(answer.error.code, halden::ErrorCode::parameter);
    };
    const auto good = newServer("", "localhost");
    refused({{"kind", "other"}, {"server", good}});
    refused({{"kind", "test"}});
    refused({{"kind", "test"}, {"server", server("x")}});
    refused({{"kind", "test"}, {"server", newServer("", "a b")}});
    refused({{"kind", "test"}, {"server", good}, {"user", "a\nb"}});
    refused({{"kind", "test"}, {"server", good}, {"group", 5}});
    EXPECT_EQ(machine.about(serverCall::testReport, "1").error.code, halden::ErrorCode::parameter);
    EXPECT_EQ(machine.about(serverCall::testReport, 99).error.code, halden::ErrorCode::parameter);
}
