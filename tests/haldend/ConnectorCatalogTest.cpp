#include "haldend/policy/ConnectorCatalog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "haldend/TestMachine.h"

using namespace corvane;
using namespace corvane::haldend;
using Names = std::vector<std::string>;

namespace {

struct Catalog : testing::Test {
    void install(const std::string& file) const { std::ofstream(folder.path() + "/" + file) << "x"; }
    void remove(const std::string& file) const { std::filesystem::remove(folder.path() + "/" + file); }
    [[nodiscard]] static Names guestsOf(ConnectorCatalog& catalog) {
        Names names;
        for (const auto& connector : catalog.all())
            if (std::ranges::find(connectors, connector.name, &Connector::name) == connectors.end())
                names.emplace_back(connector.name);
        return names;
    }

    test::TemporaryFolder folder;
    ConnectorCatalog catalog;
};

} // namespace

TEST_F(Catalog, plugInsOfAFolder_areGuestsAfterTheOwnConnectors) {
    catalog.addGuestsFrom(folder.path());
    install("Zeroconf.cvplug");
    install("Example.cvplug");
    install("notes.txt");
    install("LDAP.cvplug");
    EXPECT_EQ(guestsOf(catalog), (Names{"Example", "Zeroconf"}));
    EXPECT_EQ(catalog.all().front().name, "Local");
    EXPECT_EQ(catalog.all().size(), connectors.size() + 2);
}

TEST_F(Catalog, folderThatIsntThere_hasNoGuests) {
    catalog.addGuestsFrom("/nonexistent/folder");
    EXPECT_EQ(catalog.all().size(), connectors.size());
}

TEST_F(Catalog, everyConnector_hasACallOfItsOwn) {
    catalog.addGuestsFrom(folder.path());
    for (int i = 0; i < 120; ++i)
        install("guest" + std::to_string(i) + ".cvplug");
    std::set<int> codes;
    for (const auto& connector : catalog.all())
        EXPECT_TRUE(codes.insert(connector.callCode()).second) << connector.name;
    EXPECT_EQ(codes.size(), connectors.size() + 100) << "a hundred guests and no more";
    EXPECT_LT(*codes.rbegin(), 1200) << "other calls begin there";
}

TEST_F(Catalog, guest_keepsItsCallWhenOthersComeAndGo) {
    catalog.addGuestsFrom(folder.path());
    install("M.cvplug");
    const auto code = catalog.all().back().callCode();
    install("A.cvplug");
    const auto now = catalog.all();
    const auto found = std::ranges::find(now, std::string_view("M"), &Connector::name);
    EXPECT_EQ(found->callCode(), code);
    remove("M.cvplug");
    EXPECT_EQ(guestsOf(catalog), Names{"A"});
}

TEST_F(Catalog, nameThatIsNotPlain_isNoConnector) {
    catalog.addGuestsFrom(folder.path());
    install("two words.cvplug");
    install("line\nfeed.cvplug");
    install(".cvplug");
    EXPECT_TRUE(guestsOf(catalog).empty());
}
