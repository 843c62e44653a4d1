#include "forms/Form.h"

#include "fakes/FakeForms.h"
#include "fakes/FakePlatform.h"

using namespace corvane;
using util::Array;
using util::Dictionary;

namespace {

struct Beep final : formatters::ValidCharacterFormatter::Needs {
    void beep() override {}
};

struct Forms : testing::Test {
    using Events = std::vector<std::string>;

    fakes::FakeFormWindow& show(const Array& items, const Array& buttons) {
        return show({{"name", "example"}, {"title", "Example"}, {"items", items}, {"buttons", buttons}});
    }
    fakes::FakeFormWindow& show(const Dictionary& description) {
        form = std::make_shared<forms::Form>(
            forms::readForm(description), forms::FieldTools{beep, strings},
            [this](forms::Form::Event event, const std::string& name) { heard(event, name); });
        form->open(presenter);
        return presenter.front();
    }
    void heard(forms::Form::Event event, const std::string& name) {
        const std::vector<std::string> words{"changed", "entered", "pressed", "closed"};
        events.push_back(words.at(static_cast<std::size_t>(event)) + (name.empty() ? "" : " " + name));
        if (const auto found = onEvent.find(events.back()); found != onEvent.end()) found->second();
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
    static Array okAndCancel() { return {button("ok", "accept"), button("cancel", "cancel")}; }

    Beep beep;
    fakes::FakeStrings strings;
    fakes::FakeFormPresenter presenter;
    std::shared_ptr<forms::Form> form;
    Events events;
    std::map<std::string, std::function<void()>> onEvent;
};

} // namespace

TEST_F(Forms, typedText_isTheValueAndIsReported) {
    auto& window = show({item("text", "server")}, okAndCancel());
    window.type("server", "ldap.example.com");
    EXPECT_EQ(form->value("server"), util::Value("ldap.example.com"));
    EXPECT_EQ(events, Events{"changed server"});
    window.type("server", "ldap.example.com");
    EXPECT_EQ(events.size(), 1U) << "nothing has changed";
}

TEST_F(Forms, changesOfThePlugIn_areShownAndNotReported) {
    auto& window = show({item("text", "server")}, okAndCancel());
    form->set("server", "value", "a");
    EXPECT_EQ(window.changes, std::vector<std::string>{"server"});
    EXPECT_TRUE(events.empty());
}

TEST_F(Forms, requiredFieldThatIsEmpty_keepsTheFormOpenAndSaysSo) {
    auto& window =
        show({item("text", "server", {{"required", true}, {"complaint", "Name it."}})}, okAndCancel());
    window.type("server", "  ");
    events.clear();
    window.press("ok");
    EXPECT_TRUE(form->isOpen());
    EXPECT_EQ(window.problem, "Name it.");
    EXPECT_EQ(window.problemItem, "server");
    EXPECT_TRUE(events.empty()) << "the plug-in needn't look at it";
    window.type("server", "x");
    EXPECT_EQ(window.problem, "") << "it goes with the change";
    window.press("ok");
    EXPECT_EQ(events, (Events{"changed server", "pressed ok", "closed"}));
    EXPECT_FALSE(form->isOpen());
}

TEST_F(Forms, withoutAComplaint_theLabelSaysWhichFieldIsWrong) {
    auto& window = show(
        {item("number", "port", {{"label", "&Port:"}, {"required", true}, {"minimum", 1}, {"maximum", 9}})},
        okAndCancel());
    window.press("ok");
    EXPECT_EQ(window.problem, "Port: enter a number from 1 to 9.");
}

TEST_F(Forms, number_isANumberOrNothing) {
    auto& window = show({item("number", "port", {{"minimum", 1}, {"maximum", 100}})}, okAndCancel());
    window.type("port", "42");
    EXPECT_EQ(form->value("port"), util::Value(42));
    window.type("port", "");
    EXPECT_TRUE(form->value("port").isNull());
    form->userTyped("port", "101"); // pasted past the formatter, say
    EXPECT_TRUE(form->value("port").isNull());
    window.press("ok");
    EXPECT_TRUE(form->isOpen());
    EXPECT_EQ(window.problemItem, "port");
}

TEST_F(Forms, hiddenAndDisabledFields_arentChecked) {
    auto& window = show({item("text", "a", {{"required", true}, {"visible", false}}),
                         item("text", "b", {{"required", true}, {"enabled", false}})},
                        okAndCancel());
    window.press("ok");
    EXPECT_FALSE(form->isOpen());
}

TEST_F(Forms, complaintOfThePlugIn_keepsTheFormOpen) {
    auto& window = show({item("text", "server")}, okAndCancel());
    onEvent["pressed ok"] = [this] { form->complain("server", "It is taken."); };
    window.press("ok");
    EXPECT_TRUE(form->isOpen());
    EXPECT_EQ(window.problem, "It is taken.");
    onEvent.clear();
    window.press("ok");
    EXPECT_FALSE(form->isOpen());
}

TEST_F(Forms, cancelAndClosing_areReportedOnce) {
    show({}, okAndCancel()).press("cancel");
    EXPECT_EQ(events, (Events{"pressed cancel", "closed"}));
    form->userDismissed();
    EXPECT_EQ(events.size(), 2U);
}

TEST_F(Forms, windowThatIsDismissed_isClosedWithoutAButton) {
    show({}, okAndCancel());
    form->userDismissed();
    EXPECT_EQ(events, Events{"closed"});
}

TEST_F(Forms, complaintWhileCancelling_keepsNothingOpen) {
    show({item("text", "server")}, okAndCancel());
    onEvent["pressed cancel"] = [this] { form->complain("server", "Not now."); };
    form->userPressed("cancel");
    EXPECT_FALSE(form->isOpen());
}

TEST_F(Forms, formThatThePlugInCloses_isSilent) {
    show({}, okAndCancel());
    form->close();
    EXPECT_TRUE(events.empty());
    EXPECT_TRUE(presenter.open.empty());
}

TEST_F(Forms, formDroppedInItsOwnEvent_isHarmless) {
    auto& window = show({item("text", "server")}, okAndCancel());
    onEvent["changed server"] = [this] { form.reset(); };
    window.type("server", "x");
    EXPECT_TRUE(presenter.open.empty());
}

TEST_F(Forms, buttonsOfAList_followItsSelection) {
    const auto needing = [](const std::string& name, const std::string& needs) {
        return Dictionary{{"name", name}, {"needs", needs}};
    };
    auto& window = show({item("list", "servers",
                              {{"rows", Array{Dictionary{{"title", "a"}}, Dictionary{{"title", "b"}}}},
                               {"buttons", Array{needing("add", "nothing"), needing("edit", "oneRow"),
                                                 needing("del", "someRows")}}})},
                        {});
    EXPECT_TRUE(window.canPress("add"));
    EXPECT_FALSE(window.canPress("edit") || window.canPress("del"));
    form->userSelected("servers", {1});
    EXPECT_TRUE(window.canPress("edit") && window.canPress("del"));
    form->userSelected("servers", {0, 1});
    EXPECT_FALSE(window.canPress("edit"));
    EXPECT_TRUE(window.canPress("del"));
    form->set("servers", "rows", Array(util::ValueList()));
    EXPECT_FALSE(window.canPress("del")) << "the selection goes with the rows";
    EXPECT_EQ(events, (Events{"changed servers", "changed servers"}));
}

TEST_F(Forms, disabledButton_doesNothing) {
    show({}, {Dictionary{{"name", "ok"}, {"role", "accept"}, {"enabled", false}}});
    form->userPressed("ok");
    EXPECT_TRUE(form->isOpen());
    EXPECT_TRUE(events.empty());
    form->set("ok", "enabled", true);
    form->userPressed("ok");
    EXPECT_FALSE(form->isOpen());
}

TEST_F(Forms, actionThatChecksFields_isntReportedBeforeTheyAreInOrder) {
    auto& window = show({item("text", "server", {{"required", true}})},
                        {Dictionary{{"name", "test"}, {"checksFields", true}}});
    window.press("test");
    EXPECT_TRUE(events.empty());
    window.type("server", "x");
    window.press("test");
    EXPECT_EQ(events.back(), "pressed test");
    EXPECT_TRUE(form->isOpen());
}

TEST_F(Forms, message_closesWithAnyAnswer) {
    const Dictionary question{{"kind", "message"},
                              {"title", "Delete"},
                              {"message", "Really?"},
                              {"buttons", Array{button("cancel", "cancel"), button("yes", "destructive")}}};
    show(question).press("yes");
    EXPECT_EQ(events, (Events{"pressed yes", "closed"}));
}

TEST_F(Forms, complaintAboutAMessage_doesntKeepItOpenUnseen) {
    show({{"kind", "message"},
          {"title", "Delete"},
          {"message", "Really?"},
          {"buttons", Array{button("yes", "accept")}}});
    onEvent["pressed yes"] = [this] { form->complain("", "It is in use."); };
    form->userPressed("yes");
    EXPECT_FALSE(form->isOpen());
    EXPECT_EQ(events.back(), "closed");
}

TEST_F(Forms, numberThatThePlugInPutBeyondItsBounds_isntAccepted) {
    auto& window =
        show({item("number", "port", {{"minimum", 1}, {"maximum", 65535}, {"value", 0}})}, okAndCancel());
    window.press("ok");
    EXPECT_TRUE(form->isOpen());
    EXPECT_EQ(window.problem, "port: enter a number from 1 to 65535.");
    form->set("port", "value", 65536);
    window.press("ok");
    EXPECT_TRUE(form->isOpen());
    form->set("port", "value", 65535);
    window.press("ok");
    EXPECT_FALSE(form->isOpen());
}

TEST_F(Forms, namesThatArentThere_areRefused) {
    show({item("text", "server")}, okAndCancel());
    EXPECT_THROW((void)form->value("serv"), forms::FormError);
    EXPECT_THROW(form->set("serv", "value", "x"), forms::FormError);
    EXPECT_THROW(form->complain("serv", "x"), forms::FormError);
    EXPECT_THROW(form->set("", "width", 1), forms::FormError);
}

TEST_F(Forms, windowThatWentAway_isClosedWithoutAWord) {
    show({}, okAndCancel());
    form->windowWentAway();
    EXPECT_FALSE(form->isOpen());
    EXPECT_TRUE(events.empty());
}

TEST_F(Forms, report_holdsTitleStepsAndResults) {
    show({item("steps", "steps",
               {{"steps",
                 Array{Dictionary{{"title", "Connect"}, {"state", "done"}, {"detail", "192.0.2.1"}}}}}),
          item("result", "result", {{"paragraphs", Array{"It works."}}})},
         {});
    EXPECT_EQ(form->report(), "Example\nConnect: succeeded. 192.0.2.1\nIt works.");
}

TEST(FormTitle, withoutMnemonic_keepsADoubledSignOnce) {
    EXPECT_EQ(forms::withoutMnemonic("&Save && Close"), "Save & Close");
    EXPECT_EQ(forms::withoutMnemonic("A &"), "A &");
}
