#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;

TEST(Launch, withNoSavedState_showsServicesAt590By365) {
    fakes::FakeProgram program;
    program.launch();
    EXPECT_EQ(program.interface.mainTabView.selectedTabViewItem()->identifier(), "1");
    EXPECT_EQ(program.interface.window.contentSize(), (toolkit::Size{590, 365}));
    EXPECT_EQ(program.interface.window.toolbar().selectedItemIdentifier(), "kServices");
    EXPECT_EQ(program.interface.selectPlugIn.texts("Name"), (std::vector<std::string>{"BSD", "LDAP"}));
}
