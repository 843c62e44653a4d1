// Forms as a plug-in meets them: through the C table and its C++ wrapping.
#include <gtest/gtest.h>

#include "fakes/FakeHost.h"
#include "plugins/PluginHostTable.h"
#include "sdk/Form.h"

using namespace corvane;
using sdk::Form;
using sdk::FormButton;
using sdk::FormItem;
using sdk::FormWindow;
using Texts = std::vector<std::string>;

namespace {

struct FormsOfAPlugin : testing::Test {
    [[nodiscard]] fakes::FakeFormWindow& front() { return program.formPresenter.front(); }
    [[nodiscard]] bool isAnyOpen() const { return !program.formPresenter.open.empty(); }

    fakes::FakeHost program;
    std::unique_ptr<plugins::PluginHostTable> hostTable =
        std::make_unique<plugins::PluginHostTable>(program.makeImplementor(), "Mine");
    sdk::Host host{hostTable->table()};
};

FormWindow window(FormItem item) {
    return FormWindow("example", "Example").add(item).button(FormButton::ok({})).button(FormButton::cancel());
}

} // namespace

TEST_F(FormsOfAPlugin, describedWindow_isShownWithWhatItSays) {
    const Form form(
        host, FormWindow("example", "Example")
                  .size(400, 300)
                  .add(FormItem::number("port", "&Port:", 1, 65535).value(389).unit("of 65535"))
                  .add(FormItem::choice("mode", "Mode:").addChoice("a", "Fast").addChoice("b", "Safe")));
    const auto& shown = front().form.description();
    EXPECT_EQ(shown.title, "Example");
    EXPECT_EQ(shown.width, 400);
    EXPECT_EQ(front().required("port").maximum, 65535);
    EXPECT_EQ(front().required("port").unit, "of 65535");
    EXPECT_EQ(front().required("mode").choices.size(), 2U);
    EXPECT_EQ(form.number("port"), 389);
}

TEST_F(FormsOfAPlugin, everyKindOfValue_canBeReadAndSet) {
    Form form(host, FormWindow("example", "Example")
                        .add(FormItem::text("text", ""))
                        .add(FormItem::number("number", "", 0, 9))
                        .add(FormItem::check("check", ""))
                        .add(FormItem::password("password", ""))
                        .add(FormItem::list("list", "").rows({{"a"}, {"b"}, {"c"}})));
    EXPECT_EQ(form.number("number"), std::nullopt);
    form.setValue("text", std::string("grün"));
    form.setValue("number", std::int64_t{7});
    form.setValue("check", true);
    form.setValue("password", std::string("geheim"));
    form.select("list", {2, 0});
    EXPECT_EQ(form.text("text"), "grün");
    EXPECT_EQ(form.number("number"), 7);
    EXPECT_TRUE(form.isChecked("check"));
    EXPECT_EQ(form.secret("password"), "geheim");
    EXPECT_EQ(form.selection("list"), (std::vector<std::size_t>{0, 2}));
    form.setValue("number", {});
    EXPECT_EQ(form.number("number"), std::nullopt);
}

TEST_F(FormsOfAPlugin, valuesOfEveryType_keepWhatTheySay) {
    const std::string_view view = "from a view";
    const std::size_t row = 1;
    Form form(host, FormWindow("example", "Example")
                        .add(FormItem::text("text", "").value(view))
                        .add(FormItem::number("number", "", 0, 9'000'000'000).value(5'000'000'000))
                        .add(FormItem::number("port", "", 0, 65535).value(std::uint16_t{636}))
                        .add(FormItem::check("check", "").value(true))
                        .add(FormItem::progress("bar", "Counting").value(0.25)));
    EXPECT_EQ(form.text("text"), "from a view");
    EXPECT_EQ(form.number("number"), 5'000'000'000);
    EXPECT_EQ(form.number("port"), 636);
    EXPECT_TRUE(form.isChecked("check"));
    EXPECT_EQ(front().required("bar").value, util::Value(0.25));
    form.setValue("number", row);
    form.setValue("text", "a literal");
    EXPECT_EQ(form.number("number"), 1);
    EXPECT_EQ(form.text("text"), "a literal");
}

TEST_F(FormsOfAPlugin, fieldReadAsWhatItIsnt_isAnError) {
    const Form form(host, FormWindow("example", "Example")
                              .add(FormItem::text("text", ""))
                              .add(FormItem::number("number", "", 0, 9).value(1))
                              .add(FormItem::password("password", "").value("geheim"))
                              .add(FormItem::check("check", "")));
    EXPECT_THROW((void)form.text("number"), sdk::CallError);
    EXPECT_THROW((void)form.text("password"), sdk::CallError) << "it would seem to be empty";
    EXPECT_THROW((void)form.number("check"), sdk::CallError);
    EXPECT_THROW((void)form.isChecked("text"), sdk::CallError);
    EXPECT_THROW((void)form.selection("text"), sdk::CallError);
    EXPECT_THROW((void)form.secret("text"), sdk::CallError);
}

TEST_F(FormsOfAPlugin, password_travelsAsData) {
    const auto description =
        FormWindow("example", "Example").add(FormItem::password("password", "").value("geheim")).object(host);
    EXPECT_EQ(description["items"].at(0)["value"].kind(), CORVANE_DATA);
    const Form form(host,
                    FormWindow("example", "Example").add(FormItem::password("password", "").value("a")));
    EXPECT_EQ(form.secret("password"), "a");
    const std::array<std::uint8_t, 2> bytes{'b', 'c'};
    form.setSecret("password", bytes);
    EXPECT_EQ(form.secret("password"), "bc");
}

TEST_F(FormsOfAPlugin, everyKindOfItem_canBeMadeWithItsHandler) {
    bool again = false;
    Form form(host, FormWindow("example", "Example")
                        .add(FormItem::steps("steps", {{"Connect", "running"}}))
                        .add(FormItem::result("result"))
                        .add(FormItem::choice("mode", "").addChoice("a", "A"))
                        .add(FormItem::button("again", "Again", [&] { again = true; })));
    EXPECT_EQ(front().required("steps").steps.at(0).state, forms::Step::State::running);
    form.setParagraphs("result", {"Done."});
    form.setChoices("mode", {{"x", "X"}, {"a", "A again"}});
    EXPECT_EQ(front().required("mode").choices.at(1).title, "A again");
    EXPECT_EQ(form.text("mode"), "a");
    front().form.userPressed("again");
    EXPECT_TRUE(again);
}

TEST_F(FormsOfAPlugin, whatTheUserDoes_reachesTheHandlersByName) {
    Texts heard;
    Form form(host, FormWindow("example", "Example")
                        .add(FormItem::text("server", "")
                                 .onChange([&] { heard.push_back("changed " + form.text("server")); })
                                 .onEntered([&] { heard.emplace_back("entered"); })
                                 .button(FormButton("ask", "Ask", [&] { heard.emplace_back("asked"); })))
                        .button(FormButton::ok([&] { heard.emplace_back("ok"); }))
                        .onClosed([&] { heard.emplace_back("closed"); }));
    front().type("server", "x");
    front().form.userEntered("server");
    front().press("ask");
    front().press("ok");
    EXPECT_EQ(heard, (Texts{"changed x", "entered", "asked", "ok", "closed"}));
    EXPECT_FALSE(form.isOpen());
    EXPECT_EQ(form.text("server"), "x") << "values can be read to the end";
}

TEST_F(FormsOfAPlugin, complaint_keepsTheFormOpenAndNamesTheField) {
    Form form(host, window(FormItem::text("server", "&Server:").required("Name the server.")));
    front().press("ok");
    EXPECT_EQ(front().problem, "Name the server.");
    form.complain("server", "It is taken.");
    EXPECT_EQ(front().problemItem, "server");
    form.complain("", "Nothing works.");
    EXPECT_EQ(front().problem, "Nothing works.");
    EXPECT_EQ(front().problemItem, "");
}

TEST_F(FormsOfAPlugin, formThatIsDropped_isClosedWithoutAHandler) {
    bool heard = false;
    {
        const Form form(host, window(FormItem::text("a", "")).onClosed([&] { heard = true; }));
    }
    EXPECT_FALSE(isAnyOpen());
    EXPECT_FALSE(heard);
}

TEST_F(FormsOfAPlugin, formThatReplacesItselfInAHandler_isTheNewOne) {
    Form form;
    form = Form(host, FormWindow("first", "First").button(FormButton("next", "Next", [&] {
        form = Form(host, FormWindow("second", "Second"));
    })));
    front().press("next");
    ASSERT_EQ(program.formPresenter.open.size(), 1U);
    EXPECT_EQ(front().form.description().name, "second");
}

TEST_F(FormsOfAPlugin, pluginObjectThatIsDestroyed_takesItsFormsAlong) {
    Form::show(host, FormWindow::message("note", "Note", "Text", ""));
    EXPECT_TRUE(isAnyOpen());
    hostTable.reset();
    EXPECT_FALSE(isAnyOpen());
}

TEST_F(FormsOfAPlugin, handlerThatThrows_isReportedLikeAnyOperation) {
    const Form form(host, FormWindow("example", "Example").button(FormButton("go", "Go", [] {
        throw std::runtime_error("oops");
    })));
    front().press("go");
    EXPECT_EQ(program.done, Texts{"failed Mine a form: oops"});
}

TEST_F(FormsOfAPlugin, handlerOfOkThatThrows_keepsTheFormAndWhatWasEntered) {
    const Form form(
        host, FormWindow("example", "Example").add(FormItem::text("server", "")).button(FormButton::ok([] {
            throw std::runtime_error("oops");
        })));
    front().type("server", "kdc.example.com");
    front().press("ok");
    EXPECT_EQ(program.done, Texts{"failed Mine a form: oops"});
    ASSERT_TRUE(form.isOpen());
    EXPECT_NE(front().problem, "");
    EXPECT_EQ(form.text("server"), "kdc.example.com");
}

TEST_F(FormsOfAPlugin, callErrorOutOfAHandler_isReportedWithItsReason) {
    const Form form(host, FormWindow("example", "Example").button(FormButton("more", "More", [&] {
        const Form inner(host, window(FormItem::text("a", "").set("valeu", 1)));
    })));
    front().press("more");
    ASSERT_EQ(program.done.size(), 1U);
    EXPECT_NE(program.done[0].find("The plug-in's window can't be shown."), std::string::npos);
    EXPECT_NE(program.done[0].find("item \"a\": there is no property \"valeu\""), std::string::npos)
        << program.done[0];
}

TEST_F(FormsOfAPlugin, formReplacedWhenItWasClosed_isTheNewOne) {
    Form form;
    form = Form(host, FormWindow("first", "First").button(FormButton::cancel()).onClosed([&] {
        form = Form(host, FormWindow("second", "Second"));
    }));
    front().press("cancel");
    ASSERT_EQ(program.formPresenter.open.size(), 1U);
    EXPECT_EQ(front().form.description().name, "second");
    EXPECT_TRUE(form.isOpen());
}

TEST_F(FormsOfAPlugin, closedForm_isFreedWithItsLastReference) {
    Form form(host, window(FormItem::password("password", "").value("geheim")));
    const auto watched = front().form.weak_from_this();
    front().press("ok");
    EXPECT_EQ(form.secret("password"), "geheim");
    form = {};
    EXPECT_TRUE(watched.expired()) << "the password is still in memory";
}

TEST_F(FormsOfAPlugin, formThatNobodyHolds_staysOpenUntilItIsAnswered) {
    Form::show(host, window(FormItem::text("a", "")));
    const auto watched = front().form.weak_from_this();
    ASSERT_TRUE(isAnyOpen());
    front().press("cancel");
    EXPECT_FALSE(isAnyOpen());
    EXPECT_TRUE(watched.expired());
}

TEST_F(FormsOfAPlugin, formThatOutlivesThePluginObject_isClosedAndHarmless) {
    Form form(host, window(FormItem::text("a", "")));
    hostTable.reset();
    EXPECT_FALSE(isAnyOpen());
    form = {};
}

TEST_F(FormsOfAPlugin, formWithoutAHost_isAnError) {
    EXPECT_THROW((void)Form(sdk::Host(), window(FormItem::text("a", ""))), sdk::CallError);
}

TEST_F(FormsOfAPlugin, wrongDescription_saysWhereAndWhy) {
    try {
        const Form form(host, window(FormItem("nummer", "port")));
        FAIL() << "there is no such kind";
    } catch (const sdk::CallError& error) {
        EXPECT_EQ(error.code(), CORVANE_ERROR_PARAMETER);
        EXPECT_STREQ(error.what(), "The plug-in's window can't be shown.");
        EXPECT_NE(error.reason().find("item \"port\": \"kind\": \"nummer\""), std::string::npos);
    }
    EXPECT_FALSE(isAnyOpen());
}

TEST_F(FormsOfAPlugin, nameThatTheFormDoesntHave_isAnErrorEverywhere) {
    const Form form(host, window(FormItem::text("server", "")));
    EXPECT_THROW((void)form.text("serv"), sdk::CallError);
    EXPECT_THROW(form.setText("serv", "x"), sdk::CallError);
    EXPECT_THROW(form.complain("serv", "x"), sdk::CallError);
    EXPECT_THROW(form.suggest("serv", {"x"}), sdk::CallError);
    EXPECT_THROW(form.set("server", "valeu", std::string("x")), sdk::CallError);
}

TEST_F(FormsOfAPlugin, suggestions_areOfferedForTheField) {
    const Form form(host, window(FormItem::text("base", "")));
    form.suggest("base", {"dc=a", "dc=b"});
    EXPECT_EQ(front().suggestedFor, "base");
    EXPECT_EQ(front().suggestions, (Texts{"dc=a", "dc=b"}));
}

TEST_F(FormsOfAPlugin, referenceInC_isAFormAndOutlivesItsWindow) {
    const auto& table = hostTable->table();
    const auto description =
        FormWindow("example", "Example").add(FormItem::text("a", "").value("x")).object(host);
    auto* form = table.forms->open(table.context, description.get(), nullptr, nullptr);
    EXPECT_EQ(table.objects->kind(form), CORVANE_FORM);
    EXPECT_EQ(table.forms->isOpen(form), 1);
    table.forms->close(form);
    EXPECT_EQ(table.forms->isOpen(form), 0);
    const sdk::Object value(*table.objects, table.forms->value(form, "a", nullptr));
    EXPECT_EQ(value.text(), "x");
    table.objects->release(form);
    EXPECT_EQ(table.forms->isOpen(nullptr), 0);
    EXPECT_EQ(table.forms->set(description.get(), "a", "value", nullptr, nullptr), 0) << "no form";
}

TEST_F(FormsOfAPlugin, listenerOfAnOlderPlugin_isReadAsFarAsItGoes) {
    const auto& table = hostTable->table();
    CorvaneFormListener tooShort{
        offsetof(CorvaneFormListener, happened), nullptr,
        [](void*, int32_t, const char*) { FAIL() << "the entry lies beyond the size"; }};
    const auto description = FormWindow("example", "Example").button(FormButton("go", "Go")).object(host);
    auto* form = table.forms->open(table.context, description.get(), &tooShort, nullptr);
    front().press("go");
    table.objects->release(form);
}

TEST_F(FormsOfAPlugin, hostWithoutForms_isSaidToBeTooOld) {
    auto older = hostTable->table();
    older.size = offsetof(CorvaneHost, forms);
    try {
        const Form form(sdk::Host(older), window(FormItem::text("a", "")));
        FAIL() << "it has no forms";
    } catch (const sdk::CallError& error) {
        EXPECT_NE(error.recovery(), "");
    }
    EXPECT_FALSE(sdk::Host(older).offers(&CorvaneForms::open));
    EXPECT_TRUE(host.offers(&CorvaneForms::open));
}
