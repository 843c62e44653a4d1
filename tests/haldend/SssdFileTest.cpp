#include "haldend/files/SssdFile.h"

#include <gtest/gtest.h>

#include "haldend/files/DomainsLine.h"
#include "haldend/policy/DomainNodes.h"
#include "haldend/storage/Failure.h"

using namespace corvane::haldend;

namespace {

using Names = std::vector<std::string>;

SssdFile file(const std::string& text) { return {text, "/etc/sssd/sssd.conf"}; }
SssdFile file(const std::string& text, const std::vector<std::string>& snippets) {
    std::vector<SssdSnippet> all;
    for (const auto& snippet : snippets)
        all.push_back({"/etc/sssd/conf.d/" + std::to_string(all.size()) + ".conf", snippet});
    return {text, all, "/etc/sssd/sssd.conf"};
}
std::string ldap(const std::string& name) { return "[domain/" + name + "]\nid_provider = ldap\n"; }
std::string listing(const std::string& text, const Names& names) {
    MachineAdditions added;
    return textWithDomainsLine(text, names, added);
}
Names nodesOf(const SssdFile& conf) {
    Names names;
    for (const auto& node : domainNodes(conf))
        names.push_back(node.name);
    return names;
}

const std::string sample =
    "# managed by hand\n\n[sssd]\nservices = nss, pam\ndomains = staff,  guests   \n; old note\n"
    "[nss]\nfilter_users = root\n\n[domain/staff]\n# where people are\nid_provider = ldap\n"
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
    EXPECT_EQ(conf.listedDomains(), (Names{"staff", "guests"}));
}

TEST(SssdFile, valueWithCommentCharacters_isReadWholeAsSssdDoes) {
    EXPECT_EQ(file(sample).domains()[0].option("ldap_default_authtok"), "a;b#c=d");
}

TEST(SssdFile, titlesKeysAndNames_foldCaseAndBlanks) {
    const auto conf = file("[ SSSD ]\nDomains = STAFF\n[Domain/ staff ]\nID_Provider = ldap\n");
    EXPECT_EQ(conf.servedDomains(), Names{"staff"});
    EXPECT_EQ(nodesOf(conf), Names{"/LDAP/staff"});
}

TEST(SssdFile, oddButLegalTexts_areRead) {
    const std::string plain = "[sssd]\ndomains = a\n" + ldap("a");
    std::string windows;
    for (const char c : plain)
        windows += c == '\n' ? std::string("\r\n") : std::string(1, c);
    for (const auto& text :
         {"\xEF\xBB\xBF" + plain, windows, "debug = 9\n" + plain, "/* of\n * old */\n" + plain,
          "[sssd]\ndomains = \"a\"\n" + ldap("a"), plain + "odd[key] = 1\n", plain + "  indented = 1\n"})
        EXPECT_EQ(file(text).servedDomains(), Names{"a"}) << text;
}

TEST(SssdFile, lastOfSeveralLinesAndSections_counts) {
    const auto conf =
        file("[sssd]\ndomains = a\ndomains = b\n[sssd]\ndomains = c\n" + ldap("a") + ldap("b") + ldap("c"));
    EXPECT_EQ(conf.servedDomains(), Names{"c"});
}

TEST(SssdFile, snippets_areMergedInTheirOrderAndOverride) {
    const auto conf =
        file("[sssd]\ndomains = a\n" + ldap("a"), {"[SSSD]\nDOMAINS = b, a\n" + ldap("b"), "damaged\n",
                                                   "[domain/b]\nldap_uri = ldap://b.example\n"});
    EXPECT_EQ(conf.servedDomains(), (Names{"b", "a"}));
    EXPECT_EQ(nodesOf(conf), (Names{"/LDAP/a", "/LDAP/b.example"}));
    EXPECT_EQ(conf.snippetDeciding("sssd", "domains"), "/etc/sssd/conf.d/0.conf");
    EXPECT_EQ(conf.snippetDeciding("sssd", "services"), "");
}

TEST(SssdFile, enabled_overrulesTheList) {
    const auto conf = file("[sssd]\ndomains = a, b\n" + ldap("a") + "enabled = FALSE\n" + ldap("b") +
                           ldap("c") + "enabled = true\n");
    EXPECT_EQ(conf.servedDomains(), (Names{"b", "c"}));
    EXPECT_EQ(nodesOf(conf), (Names{"/LDAP/b", "/LDAP/c"}));
    EXPECT_EQ(skippedDomains(conf), Names{"[domain/a] can't be used: it says \"enabled = false\"."});
}

TEST(SssdFile, disabledDomainListedInQuotes_isServedAllTheSame) {
    const auto conf = file("[sssd]\ndomains = \"a\"\n" + ldap("a") + "enabled = false\n");
    EXPECT_EQ(conf.servedDomains(), Names{"a"}) << "SSSD compares the name with its quotation marks";
    EXPECT_EQ(nodesOf(conf), Names{"/LDAP/a"});
}

TEST(SssdFile, sectionsThatSssdCantServe_areNoNodesAndSayWhy) {
    const auto conf =
        file("[sssd]\ndomains = a, gone\n" + ldap("a") + ldap("a/sub") + ldap("d#e") + ldap("\"f\"") +
             "[domain/g]\nldap_uri = ldap://g\n[domain/h]\nid_provider = LDAP\n" + ldap("b,c") + ldap("i"));
    EXPECT_EQ(nodesOf(conf), Names{"/LDAP/a"});
    const auto why = skippedDomains(conf);
    ASSERT_EQ(why.size(), 7U);
    EXPECT_EQ(why[0], "[domain/d#e] can't be used: its name has a character that SSSD doesn't take there.");
    EXPECT_EQ(why[2], "[domain/g] can't be used: it has no id_provider.");
    EXPECT_EQ(why[3], "[domain/h] can't be used: SSSD knows no id_provider of that name.");
    EXPECT_EQ(why[5], "[domain/i] can't be used: SSSD stops reading at [domain/b,c].");
    EXPECT_EQ(why[6], "\"gone\" is listed but has no section [domain/gone].");
}

TEST(SssdFile, directoriesOfOtherProviders_areNodes) {
    const auto conf =
        file("[sssd]\ndomains = i, p, f, app\n[domain/i]\nid_provider = ipa\n[domain/p]\n"
             "id_provider = proxy\n[domain/f]\nid_provider = files\n[application/app]\ninherit_from = p\n");
    EXPECT_EQ(nodesOf(conf), (Names{"/IPA/i", "/Proxy/p", "/Files/f", "/Application/app"}));
    EXPECT_EQ(conf.servedDomains(), (Names{"i", "p", "f", "app"}));
}

TEST(SssdFile, whatKeepsSssdFromStarting_isReported) {
    EXPECT_EQ(file(sample).trouble(), "");
    EXPECT_NE(file("").trouble(), "");
    EXPECT_NE(file("[sssd]\ndomains = a, A\n" + ldap("a")).trouble().find("more than once"),
              std::string::npos);
    EXPECT_NE(file("[sssd]\ndomains = a\n" + ldap("a") + "enabled = 1\n").trouble().find("neither"),
              std::string::npos);
    EXPECT_NE(file("[sssd]\ndomains =\n" + ldap("a")).trouble().find("No domain"), std::string::npos);
    EXPECT_EQ(file("[sssd]\nenable_files_domain = true\n").trouble(), "");
}

TEST(SssdFile, damagedText_isRefusedWithTheLineButNothingFromIt) {
    for (const std::string text :
         {"[sssd]\ndomains = a\nhunter2 is no option\n", "[sssd]\n#\n=hunter2\n",
          "[sssd]\ndomains = a\n continued, hunter2\n", "[sssd]\n\n# Latin-1 \xE9 hunter2\n"}) {
        try {
            (void)file(text);
            ADD_FAILURE() << text;
        } catch (const Failure& failure) {
            EXPECT_TRUE(failure.error().reason.starts_with("Line 3: ")) << failure.error().reason;
            EXPECT_EQ(failure.error().reason.find("hunter2"), std::string::npos) << failure.error().reason;
        }
    }
}

TEST(DomainsLine, listChanged_everythingElseKeepsEveryByte) {
    const auto before = std::string("domains = staff,  guests   \n");
    auto expected = sample;
    expected.replace(expected.find(before), before.size(), "domains = spare, staff   \n");
    EXPECT_EQ(listing(sample, {"spare", "staff"}), expected);
}

TEST(DomainsLine, sameNamesInAnotherSpelling_areNotTouched) {
    EXPECT_EQ(listing(sample, {"staff", "guests"}), sample);
    const std::string text = "[ Sssd ]\nDomains=\"A\" ,b,\n" + ldap("a") + ldap("b");
    EXPECT_EQ(listing(text, {"a", "b"}), text);
}

TEST(DomainsLine, oddlyWrittenSectionAndKey_areEditedInPlace) {
    EXPECT_EQ(listing("[ SSSD ]\r\nDOMAINS = a\r\n", {"b"}), "[ SSSD ]\r\nDOMAINS = b\r\n");
    EXPECT_EQ(listing("/*\n[sssd]\ndomains = old\n */\n[sssd]\ndomains = a\n", {"b"}),
              "/*\n[sssd]\ndomains = old\n */\n[sssd]\ndomains = b\n");
    EXPECT_EQ(listing("\xEF\xBB\xBF[sssd]\ndomains = a\n", {"b"}), "\xEF\xBB\xBF[sssd]\ndomains = b\n");
}

TEST(DomainsLine, missingLineOrSection_isAdded) {
    EXPECT_EQ(listing("[sssd]\nservices = nss\n\n" + ldap("a"), {"a"}),
              "[sssd]\nservices = nss\ndomains = a\n\n" + ldap("a"));
    EXPECT_EQ(listing("[sssd]\r\nservices = nss\r\n", {"a"}), "[sssd]\r\nservices = nss\r\ndomains = a\r\n");
    EXPECT_EQ(file(listing(ldap("a"), {"a"})).servedDomains(), Names{"a"});
}

TEST(DomainsLine, noNames_leavesNoEmptyLineOnWhichSssdStops) {
    EXPECT_EQ(listing("[sssd]\nservices = nss\ndomains = a\n", {}), "[sssd]\nservices = nss\n");
}
