#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"
#include "fakes/RecordingPlugin.h"

using namespace corvane;
namespace attribute = halden::attribute;
using Recording = fakes::RecordingPlugin<0>;
using Names = std::vector<std::string>;

namespace {

const Names authCustom = {"/Local/Accounts", "/BSD/Files", "/LDAP/one", "/LDAP/two"};

/// Unlocked, both policies in Custom mode and read.
struct SearchPolicy : testing::Test {
    SearchPolicy() {
        program.setPolicy(search, attribute::customSearchPath, authCustom);
        program.setPolicy(contacts, attribute::customSearchPath, {"/Local/Accounts", "/LDAP/one"});
        program.launchUnlocked();
        controller.buildDSSearchPaneData();
        controller.buildDSContactsPaneData();
        program.journal.clear();
    }
    [[nodiscard]] bool edited() { return program.interface.window.isDocumentEdited(); }
    [[nodiscard]] Names shown() { return program.interface.selectNode.texts("NodeName"); }
    [[nodiscard]] Names shownContacts() { return program.interface.selectNodeContact.texts("NodeName"); }
    [[nodiscard]] static std::vector<std::int32_t> codes(const fakes::FakeNodeState& node) {
        std::vector<std::int32_t> all;
        for (const auto& call : node.calls)
            all.push_back(call.code);
        return all;
    }
    /// The list that a call 444 brought, behind the 32 bytes of the form.
    [[nodiscard]] Names writtenList(const fakes::ReceivedCall& call) {
        const util::BytesView payload = util::BytesView(call.request).subspan(32);
        return program.platform.propertyLists.parse(payload, nullptr).as<util::Array>().texts();
    }
    [[nodiscard]] int chosen() { return program.interface.selectSearchPolicy.indexOfSelectedItem(); }

    fakes::FakeProgram program;
    app::MainController& controller = program.controller();
    fakes::FakeNodeState& search = program.framework.session->search();
    fakes::FakeNodeState& contacts = program.framework.session->contacts();
};

} // namespace

TEST(SearchNodes, ofBothPolicies_areOpenedByTheirNumbers) {
    EXPECT_EQ(static_cast<std::uint32_t>(searchpolicy::authenticationTraits.searchNode), 8705U);
    EXPECT_EQ(static_cast<std::uint32_t>(searchpolicy::contactsTraits.searchNode), 8708U);
}

TEST_F(SearchPolicy, reading_showsTheActivePathsMode) {
    const std::pair<std::string_view, int> table[] = {{attribute::automaticSearchPath, 0},
                                                      {attribute::localOnlySearchPath, 1},
                                                      {attribute::customSearchPath, 2}};
    for (const auto& [path, index] : table) {
        program.setPolicy(search, path, authCustom);
        controller.buildDSSearchPaneData();
        EXPECT_EQ(chosen(), index) << path;
    }
    EXPECT_EQ(program.interface.selectSearchPolicy.shownTitle(), "Custom");
}

TEST_F(SearchPolicy, reading_selectsSynchronizesReloadsAndSynchronizesAgain) {
    controller.buildDSSearchPaneData();
    EXPECT_EQ(program.journal.entries(),
              (Names{"open /Search", "/Search.details", "remarks.hide", "selectSearchPolicy.select 2",
                     "selectSearchPolicy.synchronizeTitle", "selectNode.reloadData",
                     "selectSearchPolicy.synchronizeTitle"}));
}

TEST_F(SearchPolicy, activePathThatIsNoneOfTheThree_keepsTheModeBefore) {
    search.details.set(attribute::searchPolicy, util::Array{"something else"});
    controller.buildDSSearchPaneData();
    EXPECT_EQ(chosen(), 2);
}

TEST(SearchPolicyFirstRead, activePathThatIsNoneOfTheThree_deselectsThePopUp) {
    fakes::FakeProgram program;
    program.framework.session->search().details.set(attribute::searchPolicy, util::Array{"something else"});
    program.launch();
    program.controller().buildDSSearchPaneData();
    EXPECT_EQ(program.interface.selectSearchPolicy.indexOfSelectedItem(), -1);
    EXPECT_EQ(program.interface.selectNode.numberOfRows(), 0);
}

TEST_F(SearchPolicy, reading_losesAnUnsavedModeButKeepsTheMarkOfAnEditedList) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    program.interface.selectSearchPolicy.choose(0);
    controller.buildDSSearchPaneData();
    EXPECT_EQ(chosen(), 2);
    EXPECT_TRUE(controller.saveSearchPolicies());
    ASSERT_EQ(codes(search), std::vector<std::int32_t>{444}); // the list as read, not the edit
    EXPECT_EQ(writtenList(search.calls[0]), (Names{"/LDAP/one", "/LDAP/two"}));
}

TEST_F(SearchPolicy, whatIsRead_isADeepCopyThatTheServiceDoesntSee) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    EXPECT_EQ(search.details.valueForKey(attribute::customSearchPath).as<util::Array>().texts(), authCustom);
}

TEST_F(SearchPolicy, searchNodeThatCantBeOpened_isShownAndTriedAgainAtTheNextVisit) {
    controller.reloadSearchPolicies();
    program.framework.session->failingTypes[halden::NodeType::authenticationSearchNode] = {
        1, "The policy can't be read.", "The file is damaged.", "Mend it."};
    program.platform.strings.marks = true;
    program.interface.window.toolbar().clickItem("kSearchPaths");
    ASSERT_EQ(program.toolkit.alerts().size(), 1U);
    EXPECT_EQ(program.toolkit.alerts()[0].message, "«An unexpected error occurred»");
    EXPECT_EQ(program.toolkit.alerts()[0].information,
              "The policy can't be read.\n\nThe file is damaged.\n\nMend it.");
    EXPECT_EQ(program.toolkit.alerts()[0].buttons, Names{"«OK»"});
    program.framework.session->failingTypes.clear();
    controller.loadCurrentTabIfNeeded(std::nullopt);
    EXPECT_EQ(program.toolkit.alerts().size(), 1U);
    EXPECT_EQ(shown(), authCustom);
}

TEST_F(SearchPolicy, policyThatCantBeRead_saysSoInPlaceOfRows_andNoLongerOnceItCan) {
    controller.reloadSearchPolicies();
    search.raisesOnDetails = true;
    controller.buildDSSearchPaneData();
    EXPECT_EQ(program.interface.selectNode.shownEmptyMessage(), "This search policy can’t be read");
    search.raisesOnDetails = false;
    program.setPolicy(search, attribute::automaticSearchPath, {});
    search.details.set(attribute::automaticSearchPath, util::Array::ofTexts({}));
    controller.buildDSSearchPaneData();
    EXPECT_EQ(program.interface.selectNode.shownEmptyMessage(), "No directory domains");
}

TEST_F(SearchPolicy, exceptionWhileReading_hidesTheProgressAndShowsTheReason) {
    search.raisesOnDetails = true;
    controller.showProgressBar();
    controller.buildDSSearchPaneData();
    EXPECT_FALSE(program.interface.window.hasAttachedSheet());
    EXPECT_EQ(program.toolkit.alerts().at(0).information, "the directory service has gone away");
}

TEST_F(SearchPolicy, readThatFailsLater_leavesAnEmptyTableAndIsTriedAgainAtTheNextVisit) {
    search.raisesOnDetails = true;
    controller.buildDSSearchPaneData();
    EXPECT_EQ(program.interface.selectNode.numberOfRows(), 0);
    search.raisesOnDetails = false;
    controller.loadCurrentTabIfNeeded("2");
    EXPECT_EQ(shown(), authCustom);
}

TEST_F(SearchPolicy, editedListThatWentWithItsSession_isNotWrittenAsAnEmptyOne) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    controller.addNodeToContactsSearchPolicy("/LDAP/three");
    controller.setHaldenSession(program.framework.session);
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_TRUE(search.calls.empty());
    EXPECT_TRUE(contacts.calls.empty());
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(SearchPolicy, savingWithoutEdits_writesNothing) {
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_TRUE(search.calls.empty());
    EXPECT_TRUE(contacts.calls.empty());
}

TEST_F(SearchPolicy, saving_writesTheListThenTheModeWithOneForm) {
    program.setPolicy(search, attribute::automaticSearchPath, authCustom);
    controller.buildDSSearchPaneData();
    controller.addNodeToAuthSearchPolicy("/LDAP/three"); // also switches to Custom
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(codes(search), (std::vector<std::int32_t>{444, 333}));
    EXPECT_EQ(search.calls[1].request, util::Bytes(32, 7));
    EXPECT_TRUE(
        std::ranges::equal(search.calls[1].request, util::BytesView(search.calls[0].request).first(32)));
    EXPECT_FALSE(edited());
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(search.calls.size(), 2U); // all is written
}

TEST_F(SearchPolicy, eachMode_hasItsCode) {
    const std::pair<int, std::int32_t> table[] = {{0, 111}, {1, 222}, {2, 333}};
    for (const auto& [index, code] : table) {
        search.calls.clear();
        contacts.calls.clear();
        program.interface.selectSearchPolicy.choose(index == 2 ? 0 : index);
        program.interface.selectContactPolicy.choose(index == 2 ? 0 : index);
        if (index == 2) {
            EXPECT_TRUE(controller.saveSearchPolicies());
            search.calls.clear();
            contacts.calls.clear();
            program.interface.selectSearchPolicy.choose(2);
            program.interface.selectContactPolicy.choose(2);
        }
        EXPECT_TRUE(controller.saveSearchPolicies());
        EXPECT_EQ(codes(search), std::vector<std::int32_t>{code});
        EXPECT_EQ(codes(contacts), std::vector<std::int32_t>{code});
    }
}

TEST_F(SearchPolicy, authenticationList_isWrittenWithoutLocalNodes_contactsListAsItIs) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    controller.addNodeToContactsSearchPolicy("/BSD/Files");
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(writtenList(search.calls.at(0)), (Names{"/LDAP/one", "/LDAP/two", "/LDAP/three"}));
    EXPECT_EQ(writtenList(contacts.calls.at(0)), (Names{"/Local/Accounts", "/LDAP/one", "/BSD/Files"}));
    // What is shown keeps the local nodes.
    EXPECT_EQ(shown().size(), 5U);
}

TEST_F(SearchPolicy, savingWithoutRights_writesNothingAndShowsNothing) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    program.authorization->held = false;
    program.authorization->grantsWhenAsked = false;
    EXPECT_FALSE(controller.saveSearchPolicies());
    EXPECT_TRUE(search.calls.empty());
    EXPECT_TRUE(program.toolkit.alerts().empty());
    EXPECT_TRUE(edited());
}

TEST_F(SearchPolicy, savingWithoutTheExternalForm_writesNothing) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    program.platform.authorizationService.status = -1;
    EXPECT_FALSE(controller.saveSearchPolicies());
    EXPECT_TRUE(search.calls.empty());
}

TEST_F(SearchPolicy, authenticationNodeThatCantBeOpened_isShownAndLeavesContactsUnwritten) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    controller.addNodeToContactsSearchPolicy("/LDAP/three");
    program.framework.session->failingTypes[halden::NodeType::authenticationSearchNode] = {
        3, "Can't open it.", "No such folder.", ""};
    EXPECT_FALSE(controller.saveSearchPolicies());
    EXPECT_EQ(program.toolkit.alerts().at(0).message, "Can't open it.");
    EXPECT_EQ(program.toolkit.alerts().at(0).information, "No such folder.");
    EXPECT_TRUE(contacts.calls.empty());
    EXPECT_TRUE(edited());
}

TEST_F(SearchPolicy, contactsNodeThatCantBeOpened_failsAfterAuthenticationWasWritten) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    controller.addNodeToContactsSearchPolicy("/LDAP/three");
    program.framework.session->failingTypes[halden::NodeType::contactsSearchNode] = {3, "Can't open it.", "",
                                                                                     ""};
    EXPECT_FALSE(controller.saveSearchPolicies());
    EXPECT_EQ(codes(search), std::vector<std::int32_t>{444});
}

TEST_F(SearchPolicy, failingCall_isShownDoesntFailTheSaveAndIsTriedAgain) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    search.nextError = {9, "The change was refused.", "Somebody else edited the file.", "Read it again."};
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(program.toolkit.alerts().at(0).message, "The change was refused.");
    EXPECT_FALSE(edited());
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(codes(search), (std::vector<std::int32_t>{444, 444}));
}

TEST_F(SearchPolicy, failingModeChange_isTriedAgainToo) {
    program.interface.selectSearchPolicy.choose(0);
    search.nextError = {9, "The change was refused.", "", ""};
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(codes(search), (std::vector<std::int32_t>{111, 111}));
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(search.calls.size(), 2U);
}

TEST_F(SearchPolicy, callWithoutAReply_isASuccess) {
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    search.onCall = [](const auto&, auto*) { return std::nullopt; };
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_TRUE(program.toolkit.alerts().empty());
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(search.calls.size(), 1U);
    program.interface.selectSearchPolicy.choose(0);
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(codes(search), (std::vector<std::int32_t>{444, 111}));
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(SearchPolicy, membership_looksAtTheCustomListWhateverTheMode) {
    EXPECT_TRUE(controller.isNodeOnAuthSearchPolicy("/LDAP/two"));
    program.interface.selectSearchPolicy.choose(0);
    EXPECT_TRUE(controller.isNodeOnAuthSearchPolicy("/LDAP/two"));
    EXPECT_FALSE(controller.isNodeOnAuthSearchPolicy("/LDAP"));
    EXPECT_TRUE(controller.isNodeOnContactsSearchPolicy("/LDAP/one"));
    EXPECT_FALSE(controller.isNodeOnContactsSearchPolicy("/LDAP/two"));
}

TEST(SearchPolicyFirstRead, membershipReadsThePolicyFirst) {
    fakes::FakeProgram program;
    EXPECT_TRUE(program.controller().isNodeOnAuthSearchPolicy("/LDAP/one"));
    EXPECT_EQ(program.journal.count("/Search.details"), 1);
    EXPECT_TRUE(program.controller().isNodeOnAuthSearchPolicy("/LDAP/one"));
    EXPECT_EQ(program.journal.count("/Search.details"), 1);
}

TEST(SearchPolicyFirstRead, renamingReadsBothPoliciesFirst) {
    fakes::FakeProgram program;
    program.controller().nodeNameChanged("/LDAP/one", "/LDAP/new");
    EXPECT_TRUE(program.controller().isNodeOnAuthSearchPolicy("/LDAP/new"));
    EXPECT_TRUE(program.controller().isNodeOnContactsSearchPolicy("/LDAP/new"));
}

TEST(SearchPolicyFirstRead, deletingReadsThePolicyFirst) {
    fakes::FakeProgram program;
    program.setPolicy(program.framework.session->search(), attribute::customSearchPath, authCustom);
    program.controller().deleteNodeFromAuthSearchPolicy("/LDAP/one");
    EXPECT_EQ(program.interface.selectNode.texts("NodeName"),
              (Names{"/Local/Accounts", "/BSD/Files", "/LDAP/two"}));
    EXPECT_TRUE(program.interface.window.isDocumentEdited());
}

TEST(SearchPolicyFirstRead, deletingByPrefixReadsThePolicyFirst) {
    fakes::FakeProgram program;
    program.setPolicy(program.framework.session->contacts(), attribute::customSearchPath, authCustom);
    program.controller().deleteNodesFromContactsSearchPolicyWithPrefix("/LDAP/");
    EXPECT_EQ(program.interface.selectNodeContact.texts("NodeName"), fakes::localNodes);
    EXPECT_TRUE(program.interface.window.isDocumentEdited());
}

TEST(SearchPolicyFirstRead, addingWhereTheServiceHasNoCustomList_makesOne) {
    fakes::FakeProgram program;
    auto& search = program.framework.session->search();
    program.setPolicy(search, attribute::automaticSearchPath, {});
    search.details.remove(attribute::customSearchPath);
    program.controller().addNodeToAuthSearchPolicy("/LDAP/three");
    EXPECT_EQ(program.interface.selectNode.texts("NodeName"), Names{"/LDAP/three"});
}

TEST_F(SearchPolicy, adding_appendsMarksSwitchesToCustomAndReloads) {
    program.interface.selectSearchPolicy.choose(1);
    program.journal.clear();
    controller.addNodeToAuthSearchPolicy("/LDAP/three");
    EXPECT_EQ(chosen(), 2);
    EXPECT_EQ(shown().back(), "/LDAP/three");
    EXPECT_TRUE(edited());
    EXPECT_FALSE(program.journal.contains("addNode.show")); // the buttons stay as they were
}

TEST_F(SearchPolicy, addingWhatIsThere_changesNothingButTheMode) {
    controller.addNodeToAuthSearchPolicy("/LDAP/one");
    EXPECT_FALSE(edited());
    EXPECT_EQ(shown(), authCustom);
    program.interface.selectSearchPolicy.choose(0);
    controller.setSearchPolicyModified(false);
    controller.addNodeToAuthSearchPolicy("/LDAP/one");
    EXPECT_EQ(chosen(), 2);
    EXPECT_TRUE(edited());
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_TRUE(search.calls.empty()); // neither list nor mode differs from what is stored
}

TEST_F(SearchPolicy, deleting_removesEveryOccurrenceAndKeepsTheMode) {
    program.setPolicy(contacts, attribute::automaticSearchPath, {"/LDAP/a", "/LDAP/b", "/LDAP/a"});
    controller.buildDSContactsPaneData();
    controller.deleteNodeFromContactsSearchPolicy("/LDAP/a");
    EXPECT_TRUE(edited());
    EXPECT_EQ(program.interface.selectContactPolicy.indexOfSelectedItem(), 0);
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(writtenList(contacts.calls.at(0)), Names{"/LDAP/b"});
}

TEST_F(SearchPolicy, deletingWhatIsntThere_marksNothingButReloads) {
    controller.deleteNodeFromAuthSearchPolicy("/LDAP/nine");
    EXPECT_FALSE(edited());
    EXPECT_TRUE(program.journal.contains("selectNode.reloadData"));
}

TEST_F(SearchPolicy, deletingByPrefix_keepsTheOthersInOrder) {
    controller.deleteNodesFromAuthSearchPolicyWithPrefix("/LDAP/");
    EXPECT_EQ(shown(), fakes::localNodes);
    EXPECT_TRUE(edited());
}

TEST_F(SearchPolicy, prefix_isPlainAndCaseSensitive_andWithoutAMatchMarksNothing) {
    controller.deleteNodesFromAuthSearchPolicyWithPrefix("/ldap");
    controller.deleteNodesFromContactsSearchPolicyWithPrefix("LDAP");
    EXPECT_FALSE(edited());
    EXPECT_TRUE(program.journal.contains("selectNode.reloadData"));
    EXPECT_TRUE(program.journal.contains("selectNodeContact.reloadData"));
}

TEST_F(SearchPolicy, renaming_replacesTheFirstOccurrenceInPlaceOnBothPolicies) {
    program.setPolicy(search, attribute::customSearchPath, {"/LDAP/one", "/LDAP/x", "/LDAP/one"});
    controller.buildDSSearchPaneData();
    controller.nodeNameChanged("/LDAP/one", "/LDAP/new");
    EXPECT_EQ(shown(), (Names{"/LDAP/new", "/LDAP/x", "/LDAP/one"}));
    EXPECT_EQ(program.interface.selectNodeContact.textAt("NodeName", 1), "/LDAP/new");
    EXPECT_TRUE(edited());
}

TEST_F(SearchPolicy, renamingWithoutTwoDifferentNames_doesNothing) {
    controller.nodeNameChanged(std::nullopt, "/LDAP/new");
    controller.nodeNameChanged("/LDAP/one", std::nullopt);
    controller.nodeNameChanged("/LDAP/one", "/LDAP/one");
    controller.nodeNameChanged("/LDAP/unknown", "/LDAP/new");
    EXPECT_FALSE(edited());
}

TEST_F(SearchPolicy, renamingOnOnePolicyOnly_leavesTheOtherUnmarked) {
    controller.nodeNameChanged("/LDAP/two", "/LDAP/new");
    EXPECT_TRUE(controller.saveSearchPolicies());
    EXPECT_EQ(search.calls.size(), 1U);
    EXPECT_TRUE(contacts.calls.empty());
}

TEST_F(SearchPolicy, admission_refusesHiddenConnectorsExactly) {
    for (const auto* hidden : {"/Search", "/Contacts", "/SMB/x", "/NFS/x", "/WebDAV/x", "/WINS/x", "/SLP/x",
                               "/Zeroconf/x", "/ZeroconfDiscovery/x"})
        EXPECT_FALSE(controller.shouldAllowNodeNameOnSearchPolicy(hidden)) << hidden;
    for (const auto* allowed : {"/LDAP/one", "/search", "/Local/Accounts", "/Other/Search"})
        EXPECT_TRUE(controller.shouldAllowNodeNameOnSearchPolicy(allowed)) << allowed;
}

TEST_F(SearchPolicy, admission_isThePluginsToDecideWhereThereIsAConnector) {
    Recording::script() = {};
    Recording::script().answers["shouldAllowNodeNameOnSearchPolicy"] = false;
    program.addPlugin("AD", Recording::factory());
    plugins::PluginController::sharedInstance(program.platform.environment).loadPlugins();
    program.addConnector("AD", "Active", "1");
    program.addConnector("SMB", "Active", "12");
    controller.buildDSConfigPaneData();
    EXPECT_FALSE(controller.shouldAllowNodeNameOnSearchPolicy("/AD/example"));
    EXPECT_TRUE(
        std::ranges::count(Recording::script().calls, "shouldAllowNodeNameOnSearchPolicy /AD/example") == 1);
    EXPECT_TRUE(
        controller.shouldAllowNodeNameOnSearchPolicy("/SMB/x")); // a listed connector decides for itself
}

TEST_F(SearchPolicy, admissionOfANameWithoutConnector_raises) {
    EXPECT_THROW((void)controller.shouldAllowNodeNameOnSearchPolicy("LDAP"), util::RangeException);
}
