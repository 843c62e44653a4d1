// What every way of showing forms has in common: a user's acts reach the plug-in, changes reach the user, and
// closing is reported once.
#include <gtest/gtest.h>

#include <algorithm>

#include "FormDriver.h"
#include "fakes/FakePlatform.h"
#include "forms/Form.h"

using namespace corvane;
using util::Array;
using util::Dictionary;
using Texts = std::vector<std::string>;

namespace {

struct Beep final : formatters::ValidCharacterFormatter::Needs {
    void beep() override {}
};

struct FormContract : testing::Test {
    void show(const Array& items, const Array& buttons) {
        open({{"name", "example"}, {"title", "Example"}, {"items", items}, {"buttons", buttons}});
    }
    void open(const Dictionary& description) {
        form = std::make_shared<forms::Form>(forms::readForm(description), forms::FieldTools{beep, strings},
                                             [this](forms::Form::Event event, const std::string& name) {
                                                 const Texts words{"changed", "entered", "pressed", "closed"};
                                                 if (event == forms::Form::Event::pressed && onPress)
                                                     onPress();
                                                 events.push_back(words.at(static_cast<std::size_t>(event)) +
                                                                  (name.empty() ? "" : " " + name));
                                             });
        form->open(user->presenter());
    }
    static Dictionary item(const std::string& kind, const std::string& name,
                           const util::ValueMap& more = {}) {
        auto made = Dictionary::makeMutable({{"kind", kind}, {"name", name}});
        for (const auto& [key, value] : more)
            made.set(key, value);
        return made;
    }
    static Dictionary button(const std::string& name, const std::string& role) {
        return {{"name", name}, {"title", name}, {"role", role}};
    }

    Beep beep;
    fakes::FakeStrings strings;
    std::unique_ptr<contract::FormDriver> user = contract::makeFormDriver();
    std::shared_ptr<forms::Form> form;
    Texts events;
    std::function<void()> onPress;
};

} // namespace

TEST_F(FormContract, openForm_canBeSeenUntilItIsClosed) {
    show({item("text", "a")}, {});
    EXPECT_TRUE(user->isShown("example"));
    form->close();
    EXPECT_FALSE(user->isShown("example"));
    EXPECT_TRUE(events.empty());
}

TEST_F(FormContract, typedText_reachesThePlugIn) {
    show({item("text", "a"), item("number", "n", {{"minimum", 0}, {"maximum", 99}})}, {});
    user->type("a", "xyz");
    user->type("n", "42");
    EXPECT_EQ(form->value("a"), util::Value("xyz"));
    EXPECT_EQ(form->value("n"), util::Value(42));
    EXPECT_EQ(events.front(), "changed a");
    EXPECT_TRUE(std::ranges::find(events, "changed n") != events.end());
}

TEST_F(FormContract, changedValue_reachesTheUserWithoutAnEvent) {
    show({item("text", "a"), item("number", "n")}, {});
    form->set("a", "value", "new");
    form->set("n", "value", 7);
    EXPECT_EQ(user->shownText("a"), "new");
    EXPECT_EQ(user->shownText("n"), "7");
    EXPECT_TRUE(events.empty());
}

TEST_F(FormContract, checkedBox_reachesThePlugIn) {
    show({item("check", "c", {{"title", "Use it"}, {"value", false}})}, {});
    user->check("c", true);
    EXPECT_EQ(form->value("c"), util::Value(true));
    EXPECT_EQ(events, Texts{"changed c"});
}

TEST_F(FormContract, buttonsOfAList_canBePressedAsItsSelectionAllows) {
    const Array rows{Dictionary{{"title", "a"}}, Dictionary{{"title", "b"}}};
    const Array buttons{Dictionary{{"name", "edit"}, {"title", "Edit"}, {"needs", "oneRow"}},
                        Dictionary{{"name", "delete"}, {"title", "Delete"}, {"needs", "someRows"}}};
    show({item("list", "l", {{"rows", rows}, {"buttons", buttons}})}, {});
    EXPECT_FALSE(user->canPress("edit") || user->canPress("delete"));
    user->select("l", {0});
    EXPECT_TRUE(user->canPress("edit") && user->canPress("delete"));
    user->select("l", {0, 1});
    EXPECT_FALSE(user->canPress("edit"));
    user->press("delete");
    EXPECT_EQ(events.back(), "pressed delete");
    EXPECT_EQ(form->value("l"), util::Value(Array{0, 1}));
    form->set("l", "rows", Array(util::ValueList()));
    EXPECT_FALSE(user->canPress("delete"));
}

TEST_F(FormContract, disabledButton_canBePressedOnceItIsEnabled) {
    show({}, {Dictionary{{"name", "go"}, {"title", "Go"}, {"enabled", false}}});
    EXPECT_FALSE(user->canPress("go"));
    form->set("go", "enabled", true);
    user->press("go");
    EXPECT_EQ(events, Texts{"pressed go"});
}

TEST_F(FormContract, fieldThatIsWrong_isSaidAndKeepsTheFormOpen) {
    show({item("text", "a", {{"required", true}, {"complaint", "Fill it in."}})}, {button("ok", "accept")});
    user->press("ok");
    EXPECT_TRUE(user->isShown("example"));
    EXPECT_EQ(user->problem(), "Fill it in.");
    user->type("a", "x");
    EXPECT_EQ(user->problem(), "");
    user->press("ok");
    EXPECT_FALSE(user->isShown("example"));
    EXPECT_EQ(events.back(), "closed");
}

TEST_F(FormContract, formOpenedInAHandlerOfAnother_outlivesIt) {
    show({}, {button("ok", "accept")});
    std::shared_ptr<forms::Form> second;
    onPress = [&] {
        second = std::make_shared<forms::Form>(
            forms::readForm({{"name", "note"}, {"title", "Note"}, {"kind", "message"}, {"message", "Done."}}),
            forms::FieldTools{beep, strings}, nullptr);
        second->open(user->presenter());
    };
    user->press("ok");
    EXPECT_FALSE(user->isShown("example"));
    EXPECT_TRUE(user->isShown("note"));
    second->close();
}

TEST_F(FormContract, dismissedForm_isReportedOnce) {
    show({}, {button("cancel", "cancel")});
    user->dismiss();
    EXPECT_EQ(events, Texts{"closed"});
    EXPECT_FALSE(form->isOpen());
}

TEST_F(FormContract, answeredMessage_isClosed) {
    open({{"kind", "message"},
          {"name", "question"},
          {"title", "Delete"},
          {"message", "Really?"},
          {"buttons", Array{button("no", "cancel"), button("yes", "destructive")}}});
    EXPECT_TRUE(user->isShown("question"));
    user->press("yes");
    EXPECT_EQ(events, (Texts{"pressed yes", "closed"}));
    EXPECT_FALSE(user->isShown("question"));
}
