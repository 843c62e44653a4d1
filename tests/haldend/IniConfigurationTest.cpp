#include "haldend/files/IniConfiguration.h"

#include <gtest/gtest.h>

#include "haldend/files/SssdFileReader.h"

using namespace corvane::haldend;

namespace {

/// "title{key=value key=value}" for each section, in order.
std::string shown(const std::vector<IniSection>& sections) {
    std::string text;
    for (const auto& section : sections) {
        text += section.title + "{";
        for (const auto& option : section.options)
            text += (text.ends_with('{') ? "" : " ") + option.key + "=" + option.value;
        text += "}";
    }
    return text;
}

std::string read(const std::string& text) { return shown(IniConfiguration(text).sections()); }

} // namespace

TEST(IniConfiguration, optionSetSeveralTimes_keepsItsPlaceAndTakesTheLastValue) {
    EXPECT_EQ(read("[a]\nx = 1\ny = 2\nX = 3\n[b]\nz = 4\n[A]\nx = 5\nw = 6\n"), "a{x=5 y=2 w=6}b{z=4}");
}

TEST(IniConfiguration, commentsOfAllKinds_meanNothing) {
    EXPECT_EQ(
        read("# x = 1\n[a]\n; x = 1\nx = 2\n/* y = 1\n[b]\n*/\n */\n//z = 1\n/*/\nv = 1\n*/ */\nw = 3\n"),
        "a{x=2 w=3}");
    EXPECT_EQ(read("\xEF\xBB\xBF# x = 1\n[a]\n \t\nx = 2\n"), "a{x=2}");
}

TEST(IniConfiguration, keysThatLookLikeSomethingElse_areRead) {
    EXPECT_EQ(read("[a]\n #x = 1\n [y] = 2\n [z = 3\n/k = 4\n"), "a{#x=1 [y]=2 [z=3 /k=4}");
    EXPECT_EQ(read("[a]\nx = 1\n [ = 2\ny = 3\n"), "a{x=1 y=3}") << "the library has no such option";
}

TEST(IniConfiguration, valuesWithBlanksAndSigns_areKept) {
    EXPECT_EQ(read("[a]\nx =  b = c  # d \ny =\nz=" + std::string(300, 'v') + " w\n"),
              "a{x=b = c  # d y= z=" + std::string(300, 'v') + " w}");
}

TEST(IniConfiguration, commentWithoutAnEnd_isDamageOnTheLibrarysLine) {
    try {
        (void)IniConfiguration("[a]\n# b\n/* c\nx = 1\n# d\n");
        FAIL() << "it was read";
    } catch (const IniDamage& damage) {
        EXPECT_GE(damage.line, 3U);
        EXPECT_NE(damage.reason.find("comment"), std::string::npos) << damage.reason;
    }
}

TEST(IniConfiguration, merged_overridesInPlaceAndAddsTheRest) {
    IniConfiguration configuration("[a]\nx = 1\ny = 2\n[b]\n");
    configuration.merge(IniConfiguration("[c]\nz = 1\n[A]\nY = 3\nw = 4\n"));
    EXPECT_EQ(shown(configuration.sections()), "a{x=1 y=3 w=4}b{}c{z=1}");
}

TEST(SssdFileReader, sameTextAndSnippets_areReadOnce) {
    SssdFileReader reader;
    const std::string text = "[sssd]\ndomains = a\n[domain/a]\nid_provider = ldap\n";
    const std::vector<SssdSnippet> snippets{{"/etc/sssd/conf.d/1.conf", "[domain/a]\nenabled = false\n"}};
    const auto first = reader.read(text, {}, "/etc/sssd/sssd.conf");
    EXPECT_EQ(reader.read(text, {}, "/etc/sssd/sssd.conf"), first);
    const auto overridden = reader.read(text, snippets, "/etc/sssd/sssd.conf");
    EXPECT_NE(overridden, first);
    EXPECT_TRUE(overridden->servedDomains().empty());
    EXPECT_EQ(first->servedDomains(), std::vector<std::string>{"a"}) << "it is still what it was";
    EXPECT_NE(reader.read(text + "# x\n", snippets, "/etc/sssd/sssd.conf"), overridden);
    EXPECT_EQ(reader.read(text, {}, "/elsewhere")->path(), "/elsewhere");
}
