// What of the machine's configuration isn't used is said below the list of each policy.
#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;

namespace {

struct Remarks : testing::Test {
    void say(const std::vector<std::string>& remarks) {
        program.framework.session->search().details.set(halden::attribute::remarks,
                                                        util::Array::ofTexts(remarks));
    }
    void open() {
        program.launchUnlocked();
        program.controller().loadCurrentTabIfNeeded("2");
    }
    fakes::FakeProgram program;
    fakes::FakeNotice& strip = program.interface.remarks;
};

} // namespace

TEST_F(Remarks, noneFromTheService_stripIsHidden) {
    open();
    EXPECT_TRUE(strip.isHidden());
}

TEST_F(Remarks, someFromTheService_areShownALineEach) {
    say({"[domain/a] can't be used: it has no id_provider.",
         "\"b\" is listed but has no section [domain/b]."});
    open();
    EXPECT_EQ(strip.shownMessage(), "Part of this machine’s configuration isn’t used");
    EXPECT_EQ(strip.shownInformation(), "[domain/a] can't be used: it has no id_provider.\n"
                                        "\"b\" is listed but has no section [domain/b].");
}

TEST_F(Remarks, onlyOne_makesALowStrip) {
    say({"[domain/a] can't be used: it has no id_provider."});
    open();
    EXPECT_EQ(strip.shownMessage(), "[domain/a] can't be used: it has no id_provider.");
    EXPECT_EQ(strip.shownInformation(), "");
}

TEST_F(Remarks, goneWhenThePolicyIsReadAgain_stripGoesToo) {
    say({"[domain/a] can't be used: it has no id_provider."});
    open();
    say({});
    program.controller().reloadSearchPolicies();
    program.controller().loadCurrentTabIfNeeded("2");
    EXPECT_TRUE(strip.isHidden());
}

TEST_F(Remarks, aboutTheContactsPolicy_areShownBelowItsOwnList) {
    program.framework.session->contacts().details.set(halden::attribute::remarks,
                                                      util::Array{"No directory can be listed."});
    program.launchUnlocked();
    program.controller().loadCurrentTabIfNeeded("3");
    EXPECT_EQ(program.interface.remarksContact.shownMessage(), "No directory can be listed.");
    EXPECT_EQ(strip.shownMessage(), "");
}
