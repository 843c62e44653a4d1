#include "haldend/LdapServersTest.h"

using namespace corvane;
using namespace corvane::haldend::test;

// A machine that never had a directory gets a server, uses it, and loses it again: not a byte of its
// configuration may differ then.
namespace {

const char* const noFile = "";
const char* const nsswitchWithSss = "passwd:         files systemd sss # as the distribution made it\n"
                                    "group:          files systemd sss\nshadow:         files\n"
                                    "netgroup:       nis sss\n";

struct Start {
    std::string sssd;
    std::string nsswitch;
};

std::vector<Start> starts() {
    std::vector<Start> all;
    for (const auto* nsswitch : {plainNsswitch, nsswitchWithSss})
        for (const std::string sssd :
             {noFile, "\n", "# nothing yet", "[sssd]\nservices = nss\n\n[nss]\nfilter_users = root",
              "[sssd]\n", "[sssd]\ndomains =  \n\n[pam]\n\n", "[nss]\nfilter_users = root\n\n\n",
              "; first\n\n[pam]\noffline = 1 ; note\n# end\n"})
            all.push_back({sssd, nsswitch});
    return all;
}

util::Array office() {
    return {newServer("office", "ldap.example.com",
                      {{serverKey::bindDN, "cn=r"}, {serverKey::password, password("x#y")}})};
}

} // namespace

TEST(LeftAsFound, serverAddedUsedAndRemoved_leavesEveryByteOfEtc) {
    for (const auto& start : starts()) {
        ServerMachine machine(start.sssd, start.nsswitch);
        const auto before = everythingBelowEtc(machine);
        ASSERT_EQ(machine.write(office()).error.code, 0) << start.sssd;
        ASSERT_EQ(machine.call(machine.search(), 111).code, 0);
        EXPECT_NE(machine.sssd().find("domains"), std::string::npos);
        machine.start(); // the program may have been ended in between
        ASSERT_EQ(machine.write({}, {"office"}).error.code, 0);
        EXPECT_EQ(everythingBelowEtc(machine), before) << start.sssd << "---\n" << start.nsswitch;
    }
}

TEST(LeftAsFound, serverAddedAndRemovedWithoutUse_leavesEveryByteOfEtc) {
    for (const auto& start : starts()) {
        const ServerMachine machine(start.sssd, start.nsswitch);
        const auto before = everythingBelowEtc(machine);
        ASSERT_EQ(machine.write(office()).error.code, 0) << start.sssd;
        ASSERT_EQ(machine.write({}, {"office"}).error.code, 0);
        EXPECT_EQ(everythingBelowEtc(machine), before) << start.sssd << "---\n" << start.nsswitch;
    }
}

TEST(LeftAsFound, severalServersRemovedOneByOneAndAllAtOnce_leaveEveryByteOfEtc) {
    const util::Array three{newServer("a", "a.example.com"), newServer("b", "b.example.com"),
                            newServer("c", "c.example.com")};
    for (const auto& start : starts()) {
        const ServerMachine machine(start.sssd, start.nsswitch);
        const auto before = everythingBelowEtc(machine);
        ASSERT_EQ(machine.write(three).error.code, 0) << start.sssd;
        ASSERT_EQ(machine.call(machine.search(), 111).code, 0);
        for (const auto* name : {"b", "a", "c"})
            ASSERT_EQ(machine.write({}, {name}).error.code, 0);
        EXPECT_EQ(everythingBelowEtc(machine), before) << start.sssd << "---\n" << start.nsswitch;
        ASSERT_EQ(machine.write(three).error.code, 0);
        ASSERT_EQ(machine.write({}, {"c", "a", "b"}).error.code, 0);
        EXPECT_EQ(everythingBelowEtc(machine), before) << start.sssd << "---\n" << start.nsswitch;
    }
}

TEST(LeftAsFound, serverOnThePolicyOfABareMachine_bringsAFileThatSssdCanStartWith) {
    const ServerMachine machine("");
    (void)machine.write({newServer("office", "ldap.example.com")});
    (void)machine.call(machine.search(), 111);
    EXPECT_EQ(machine.sssd(), "[sssd]\nservices = nss, pam\ndomains = office\n\n[domain/office]\n"
                              "id_provider = ldap\nauth_provider = ldap\nldap_uri = ldap://ldap.example.com\n"
                              "ldap_id_use_start_tls = true\nldap_tls_reqcert = demand\n");
}

TEST(LeftAsFound, whatAPersonAddedMeanwhile_stays) {
    const ServerMachine machine("");
    (void)machine.write(office());
    (void)machine.call(machine.search(), 111);
    machine.folder.write("etc/sssd/sssd.conf", machine.sssd() + "\n[nss]\nfilter_users = root\n");
    (void)machine.mode(machine.search());
    ASSERT_EQ(machine.write({}, {"office"}).error.code, 0);
    EXPECT_EQ(machine.sssd(), "[nss]\nfilter_users = root\n");
}

TEST(LeftAsFound, localChosenBeforeTheLastServerGoes_isNotTakenBack) {
    const ServerMachine machine("", nsswitchWithSss);
    (void)machine.write(office());
    (void)machine.call(machine.search(), 222);
    ASSERT_EQ(machine.write({}, {"office"}).error.code, 0);
    EXPECT_EQ(machine.nsswitch().find("sss"), std::string::npos);
    EXPECT_FALSE(machine.folder.has("etc/sssd"));
}
