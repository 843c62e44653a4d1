#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;
namespace attribute = halden::attribute;
using Names = std::vector<std::string>;

namespace {

/// Unlocked, both policies in Custom mode and read.
struct PartlyFailedSaves : testing::Test {
    PartlyFailedSaves() {
        program.setPolicy(search, attribute::customSearchPath,
                          {"/Local/Accounts", "/BSD/Files", "/LDAP/one"});
        program.setPolicy(contacts, attribute::customSearchPath, {"/LDAP/one"});
        program.launchUnlocked();
        controller.buildDSSearchPaneData();
        controller.buildDSContactsPaneData();
        program.journal.clear();
    }
    [[nodiscard]] static std::vector<std::int32_t> codes(const fakes::FakeNodeState& node) {
        std::vector<std::int32_t> all;
        for (const auto& call : node.calls)
            all.push_back(call.code);
        return all;
    }
    [[nodiscard]] static std::string payload(const fakes::ReceivedCall& call) {
        return util::textFromBytes(util::BytesView(call.request).subspan(32));
    }
    static std::function<std::optional<util::Bytes>(const fakes::ReceivedCall&, halden::Error*)>
    refusing(std::int32_t code) {
        return [code](const auto& call, auto* error) -> std::optional<util::Bytes> {
            if (call.code != code) return util::Bytes();
            *error = {9, "The change was refused.", "", ""};
            return std::nullopt;
        };
    }

    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
    fakes::FakeNodeState& search = program.framework.session->search();
    fakes::FakeNodeState& contacts = program.framework.session->contacts();
};

} // namespace

TEST_F(PartlyFailedSaves, list_isSentInBinaryForm) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    EXPECT_TRUE(controller.saveSearchPolicies());
    ASSERT_EQ(codes(search), std::vector<std::int32_t>{444});
    EXPECT_EQ(payload(search.calls[0]).substr(0, 4), "bin:");
}

TEST_F(PartlyFailedSaves, refusedList_doesNotKeepTheModeFromBeingSent) {
    program.setPolicy(search, attribute::automaticSearchPath, {"/Local/Accounts", "/BSD/Files"});
    controller.buildDSSearchPaneData();
    controller.addNodeToAuthSearchPolicy("/LDAP/three"); // switches to Custom
    search.onCall = refusing(444);
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(codes(search), (std::vector<std::int32_t>{444, 333}));
}

TEST_F(PartlyFailedSaves, refusedLoginPolicy_doesNotKeepContactsFromBeingSent) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    controller.addNodeToContactsSearchPolicy("/LDAP/three");
    search.onCall = refusing(444);
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(codes(contacts), std::vector<std::int32_t>{444});
    EXPECT_EQ(program.toolkit.alerts().size(), 1U);
}

TEST_F(PartlyFailedSaves, externalForm_isMadeOnceForBothPolicies) {
    controller.addNodeToAuthSearchPolicy("/LDAP/two");
    controller.addNodeToContactsSearchPolicy("/LDAP/two");
    program.journal.clear();
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(program.journal.only({"makeExternalForm", "open /Search", "open /Contacts", "/Search.call 444",
                                    "/Contacts.call 444"}),
              (Names{"makeExternalForm", "open /Search", "/Search.call 444", "open /Contacts",
                     "/Contacts.call 444"}));
    const auto form = [](const fakes::ReceivedCall& call) {
        return util::Bytes(call.request.begin(), call.request.begin() + 32);
    };
    EXPECT_EQ(form(search.calls.at(0)), form(contacts.calls.at(0)));
}

TEST_F(PartlyFailedSaves, localNodeThatIsOnTheListTwice_isSentNotAtAll) {
    program.setPolicy(search, attribute::customSearchPath,
                      {"/Local/Accounts", "/BSD/Files", "/LDAP/one", "/Local/Accounts", "/BSD/Files"});
    controller.buildDSSearchPaneData();
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    EXPECT_TRUE(controller.saveSearchPolicies());
    const auto sent = program.platform.propertyLists.parse(
        util::BytesView(search.calls.at(0).request).subspan(32), nullptr);
    EXPECT_EQ(sent.as<util::Array>().texts(), (Names{"/LDAP/one", "/LDAP/three"}));
}

TEST_F(PartlyFailedSaves, progressBar_isGoneBeforeTheAlertComes) {
    search.raisesOnDetails = true;
    controller.showProgressBar();
    program.journal.clear();
    controller.buildDSSearchPaneData();
    const auto& entries = program.journal.entries();
    const auto first = [&](const std::string& start) {
        return std::ranges::find_if(entries, [&](const auto& entry) { return entry.starts_with(start); }) -
               entries.begin();
    };
    EXPECT_LT(first("alert "), long(entries.size()));
    EXPECT_LT(first("window.endSheet"), first("alert "));
}

TEST(PolicyThatWasNeverRead, adding_whereItCantBeRead_changesAndWritesNothing) {
    fakes::FakeProgram program;
    auto& search = program.framework.session->search();
    search.raisesOnDetails = true;
    program.launchUnlocked();
    program.controller().addNodeToAuthSearchPolicy("/LDAP/three");
    EXPECT_EQ(program.toolkit.alerts().size(), 1U);
    EXPECT_FALSE(program.interface.window.isDocumentEdited());
    search.raisesOnDetails = false;
    EXPECT_TRUE(program.controller().saveSearchPolicies());
    EXPECT_TRUE(search.calls.empty());
    EXPECT_FALSE(program.controller().isNodeOnAuthSearchPolicy("/LDAP/three"));
}
