#include "haldend/SssdFile.h"

#include <gtest/gtest.h>

#include "haldend/Failure.h"

using namespace corvane::haldend;

namespace {

std::shared_ptr<Lenses> lenses() {
    static const auto shared = std::make_shared<Lenses>();
    return shared;
}
SssdFile file(const std::string& text) { return {lenses(), text, "/etc/sssd/sssd.conf"}; }

const std::string sample = "# managed by hand\n\n[sssd]\nservices = nss, pam\ndomains = staff,  guests   \n; old note\n"
                           "[nss]\nfilter_users = root\n\n[domain/staff]\n  # where people are\nid_provider = ldap\n"
                           "ldap_uri = ldap://ldap.example.com\nldap_default_authtok = a;b#c=d\n\n[domain/guests]\n"
                           "id_provider=ad\n[domain/spare]\nid_provider = ldap\n";

} // namespace

TEST(SssdFile, sectionsAndList_areReadInOrder) {
    const auto conf = file(sample);
    ASSERT_EQ(conf.domains().size(), 3U);
    EXPECT_EQ(conf.domains()[0].name, "staff");
    EXPECT_EQ(conf.domains()[1].option("id_provider"), "ad");
    EXPECT_EQ(conf.domains()[2].name, "spare");
    EXPECT_EQ(conf.domains()[2].option("ldap_uri", "none"), "none");
    EXPECT_EQ(conf.listedDomains(), (std::vector<std::string>{"staff", "guests"}));
}

TEST(SssdFile, valueWithCommentCharacters_isReadWholeAsSssdDoes) {
    EXPECT_EQ(file(sample).domains()[0].option("ldap_default_authtok"), "a;b#c=d");
}

TEST(SssdFile, listChanged_everythingElseKeepsEveryOctet) {
    const auto before = std::string("domains = staff,  guests   \n");
    auto expected = sample;
    expected.replace(expected.find(before), before.size(), "domains = spare, staff   \n");
    EXPECT_EQ(file(sample).textListing({"spare", "staff"}), expected);
}

TEST(SssdFile, sameList_isNotTouched) { EXPECT_EQ(file(sample).textListing({"staff", "guests"}), sample); }

TEST(SssdFile, commentBehindTheList_survives) {
    EXPECT_EQ(file("[sssd]\ndomains = a, b # ours\n[domain/a]\n[domain/b]\n").textListing({"b"}),
              "[sssd]\ndomains = b # ours\n[domain/a]\n[domain/b]\n");
}

TEST(SssdFile, missingLineOrSection_isAdded) {
    EXPECT_EQ(file("[sssd]\nservices = nss\n\n[domain/a]\nid_provider = ldap\n").textListing({"a"}),
              "[sssd]\nservices = nss\n\ndomains=a\n[domain/a]\nid_provider = ldap\n");
    EXPECT_EQ(file("[domain/a]\nid_provider = ldap\n").textListing({"a"}),
              "[domain/a]\nid_provider = ldap\n[sssd]\ndomains=a\n");
}

TEST(SssdFile, emptyText_standsForNoFile) {
    EXPECT_TRUE(file("").domains().empty());
    EXPECT_TRUE(file("").listedDomains().empty());
}

TEST(SssdFile, damagedText_isRefusedWithLineAndEvidenceButNoPassword) {
    try {
        (void)file("[sssd]\ndomains = a\nthis is no option\n");
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_NE(failure.error().reason.find("Line 3 "), std::string::npos) << failure.error().reason;
        EXPECT_NE(failure.error().reason.find("this is no option"), std::string::npos);
    }
    try {
        (void)file("[domain/a]\n=ldap_default_authtok = hunter2\n");
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.error().reason.find("hunter2"), std::string::npos) << failure.error().reason;
    }
}
