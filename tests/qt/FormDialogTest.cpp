// Forms on real widgets, worked with mouse and keys: what the connector's own windows don't use.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include "fakes/FakePlatform.h"
#include "qt/forms/QtFormPresenter.h"

using namespace corvane;
using util::Array;
using util::Dictionary;

namespace {

struct Beep final : formatters::ValidCharacterFormatter::Needs {
    void beep() override { ++count; }
    int count = 0;
};

struct FormOnScreen : testing::Test {
    ~FormOnScreen() override {
        form.reset();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    FormOnScreen() = default;
    FormOnScreen(const FormOnScreen&) = delete;
    FormOnScreen& operator=(const FormOnScreen&) = delete;

    void show(const Array& items, const util::ValueMap& more = {}) {
        auto description =
            Dictionary::makeMutable({{"name", "example"}, {"title", "Example"}, {"items", items}});
        for (const auto& [key, value] : more)
            description.set(key, value);
        open(description);
    }
    void open(const Dictionary& description) {
        form = std::make_shared<forms::Form>(
            forms::readForm(description), forms::FieldTools{beep, strings},
            [this](forms::Form::Event event, const std::string& name) {
                const std::vector<std::string> words{"changed", "entered", "pressed", "closed"};
                events.push_back(words.at(static_cast<std::size_t>(event)) + " " + name);
                if (onEvent) onEvent();
            });
        form->open(presenter);
        QApplication::processEvents();
    }
    static Dictionary item(const std::string& kind, const std::string& name,
                           const util::ValueMap& more = {}) {
        auto made = Dictionary::makeMutable({{"kind", kind}, {"name", name}});
        for (const auto& [key, value] : more)
            made.set(key, value);
        return made;
    }
    template <typename Widget>
    static Widget* find(const char* name) {
        for (auto* top : QApplication::topLevelWidgets())
            if (top->isVisible())
                if (auto* found = top->findChild<Widget*>(name)) return found;
        return nullptr;
    }
    static QDialog* dialog() {
        for (auto* top : QApplication::topLevelWidgets())
            if (top->isVisible())
                if (auto* found = qobject_cast<QDialog*>(top)) return found;
        return nullptr;
    }

    Beep beep;
    fakes::FakeStrings strings;
    fakes::FakeLog log;
    qt::HandlerGuard guard{log};
    qt::QtFormPresenter presenter{guard};
    std::shared_ptr<forms::Form> form;
    std::vector<std::string> events;
    std::function<void()> onEvent;
};

} // namespace

TEST_F(FormOnScreen, characters_areRefusedAsTheyAreTyped) {
    show({item("text", "realm", {{"characters", "listed"}, {"listedCharacters", "ABC"}})});
    QTest::keyClicks(find<QLineEdit>("realm"), "AxB");
    EXPECT_EQ(find<QLineEdit>("realm")->text(), "AB");
    EXPECT_EQ(beep.count, 1);
    EXPECT_EQ(form->value("realm"), util::Value("AB"));
}

TEST_F(FormOnScreen, firstField_hasTheKeyboardAndItsLabelReachesIt) {
    show({item("paragraph", "", {{"text", "Words"}}), item("text", "a", {{"label", "&Realm:"}}),
          item("text", "b")});
    EXPECT_TRUE(find<QLineEdit>("a")->hasFocus());
    EXPECT_EQ(find<QLineEdit>("a")->accessibleName(), "Realm");
}

TEST_F(FormOnScreen, textThatIsBeingTyped_staysWhileOtherPropertiesChange) {
    show({item("number", "port", {{"minimum", 0}, {"maximum", 9999}})});
    QTest::keyClicks(find<QLineEdit>("port"), "007");
    form->set("port", "placeholder", "389");
    EXPECT_EQ(find<QLineEdit>("port")->text(), "007");
    EXPECT_EQ(form->value("port"), util::Value(7));
    form->set("port", "value", 8);
    EXPECT_EQ(find<QLineEdit>("port")->text(), "8");
}

TEST_F(FormOnScreen, fieldThatIsLeftAfterTyping_isReportedOnce) {
    show({item("text", "a"), item("text", "b")});
    QTest::keyClicks(find<QLineEdit>("a"), "x");
    find<QLineEdit>("b")->setFocus();
    find<QLineEdit>("a")->setFocus();
    find<QLineEdit>("b")->setFocus();
    EXPECT_EQ(events, (std::vector<std::string>{"changed a", "entered a"}));
}

TEST_F(FormOnScreen, suggestionThatIsChosen_isTypedAndReported) {
    show({item("text", "base")});
    form->suggest("base", {"dc=a&b", "dc=c"});
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_EQ(find<QLineEdit>("base")->text(), "dc=a&b");
    EXPECT_EQ(events, std::vector<std::string>{"changed base"});
}

TEST_F(FormOnScreen, progress_isAPartOrJustGoesOn) {
    show({item("progress", "part")});
    EXPECT_EQ(find<QProgressBar>("part")->maximum(), 0);
    form->set("part", "value", 0.25);
    EXPECT_EQ(find<QProgressBar>("part")->value() * 4, find<QProgressBar>("part")->maximum());
}

TEST_F(FormOnScreen, textsAreNoMarkup_whereverTheyCome) {
    const std::string markup = "<b>bold</b>";
    show({item("paragraph", "words", {{"text", markup}}),
          item("result", "result", {{"paragraphs", Array{markup}}})});
    EXPECT_EQ(find<QLabel>("words")->textFormat(), Qt::PlainText);
    EXPECT_TRUE(find<QLabel>("result")->text().contains("&lt;b&gt;"));
    form->close();
    open({{"kind", "message"}, {"title", "T"}, {"message", markup}, {"details", markup}});
    EXPECT_EQ(qobject_cast<QMessageBox*>(dialog())->textFormat(), Qt::PlainText);
}

TEST_F(FormOnScreen, message_answersWithEscapeAsWithItsCancelButton) {
    const Dictionary no{{"name", "no"}, {"title", "No"}, {"role", "cancel"}};
    const Dictionary yes{{"name", "yes"}, {"title", "Yes"}, {"role", "destructive"}};
    open({{"kind", "message"}, {"title", "T"}, {"message", "Really?"}, {"buttons", Array{no, yes}}});
    QTest::keyClick(dialog(), Qt::Key_Escape);
    QApplication::processEvents();
    EXPECT_EQ(events, (std::vector<std::string>{"pressed no", "closed "}));
    EXPECT_EQ(dialog(), nullptr);
}

TEST_F(FormOnScreen, disabledButtonOfAMessage_cantBePressedUntilItIsEnabled) {
    const Dictionary yes{{"name", "yes"}, {"title", "Yes"}, {"enabled", false}};
    open({{"kind", "message"},
          {"name", "m"},
          {"title", "T"},
          {"message", "Really?"},
          {"buttons", Array{yes}}});
    EXPECT_FALSE(find<QPushButton>("yes")->isEnabled());
    form->set("yes", "enabled", true);
    EXPECT_TRUE(find<QPushButton>("yes")->isEnabled());
}

TEST_F(FormOnScreen, messageDestroyedWithItsParent_leavesAClosedForm) {
    open({{"kind", "message"}, {"title", "T"}, {"message", "Really?"}});
    delete dialog();
    EXPECT_FALSE(form->isOpen());
    EXPECT_TRUE(events.empty());
}

TEST_F(FormOnScreen, numberSetToNothing_takesAnUnacceptableTextAway) {
    show({item("number", "port", {{"minimum", 1}, {"maximum", 65535}})});
    find<QLineEdit>("port")->setText("99999");
    form->set("port", "placeholder", "389");
    EXPECT_EQ(find<QLineEdit>("port")->text(), "99999") << "it is the user's";
    form->set("port", "value", util::Value());
    EXPECT_EQ(find<QLineEdit>("port")->text(), "");
}

TEST_F(FormOnScreen, buttonInTheWindow_copiesTheReport) {
    show({item("result", "result", {{"paragraphs", Array{"It works."}}}),
          item("button", "copy", {{"title", "Copy"}, {"role", "copy"}})});
    QTest::mouseClick(find<QPushButton>("copy"), Qt::LeftButton);
    EXPECT_EQ(QApplication::clipboard()->text(), "Example\nIt works.");
}

TEST_F(FormOnScreen, groupThatIsHiddenOrDisabled_takesItsItemsAlong) {
    show({item("group", "more", {{"title", "More"}, {"items", Array{item("text", "inside")}}})});
    EXPECT_TRUE(find<QLineEdit>("inside")->isVisible());
    form->set("more", "enabled", false);
    EXPECT_FALSE(find<QLineEdit>("inside")->isEnabled());
    form->set("more", "visible", false);
    EXPECT_FALSE(find<QLineEdit>("inside")->isVisible());
    form->set("more", "visible", true);
    EXPECT_TRUE(find<QLineEdit>("inside")->isVisible());
}

TEST_F(FormOnScreen, formDroppedWhileItsButtonIsBeingPressed_isGoneAfterwards) {
    show({}, {{"buttons", Array{Dictionary{{"name", "go"}, {"title", "Go"}}}}});
    const QPointer<QDialog> window = dialog();
    onEvent = [this] { form.reset(); };
    QTest::mouseClick(find<QPushButton>("go"), Qt::LeftButton);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(window.isNull());
}

TEST_F(FormOnScreen, windowDestroyedWithItsParent_leavesAClosedForm) {
    show({item("text", "a")});
    delete dialog();
    EXPECT_FALSE(form->isOpen());
    form->set("a", "value", "still there");
    EXPECT_EQ(form->value("a"), util::Value("still there"));
    EXPECT_TRUE(events.empty());
}

TEST_F(FormOnScreen, returnInAFieldWithAButtonOfItsOwn_pressesThatOne) {
    show({item("text", "user", {{"enterPresses", "again"}})},
         {{"buttons", Array{Dictionary{{"name", "again"}, {"title", "Again"}},
                            Dictionary{{"name", "ok"}, {"title", "OK"}, {"role", "accept"}}}}});
    QTest::keyClick(find<QLineEdit>("user"), Qt::Key_Return);
    EXPECT_EQ(events, std::vector<std::string>{"pressed again"});
    EXPECT_TRUE(form->isOpen());
}

TEST_F(FormOnScreen, hiddenField_takesItsLabelAlong) {
    show({item("text", "a", {{"label", "One:"}}), item("text", "b", {{"label", "Two:"}})});
    form->set("a", "visible", false);
    QStringList shown;
    for (auto* label : dialog()->findChildren<QLabel*>())
        if (label->isVisible()) shown << label->text();
    EXPECT_FALSE(shown.contains("One:"));
    EXPECT_TRUE(shown.contains("Two:"));
}

TEST_F(FormOnScreen, windowOfManyFields_opensHighEnoughForAllOfThem) {
    auto fields = Array::makeMutable();
    for (const auto* name : {"a", "b", "c", "d", "e", "f", "g"})
        fields.append(item("text", name, {{"label", "Field:"}}));
    show(fields);
    auto* area = QApplication::activeModalWidget()->findChild<QScrollArea*>("formFields");
    ASSERT_NE(area, nullptr);
    EXPECT_GE(area->viewport()->height(), area->widget()->minimumSizeHint().height());
    EXPECT_FALSE(area->verticalScrollBar()->isVisible());
}

TEST_F(FormOnScreen, choiceWithoutAValue_isReadAsItIsShown) {
    const Array choices{Dictionary{{"value", "a"}, {"title", "Fast"}},
                        Dictionary{{"value", "b"}, {"title", "Safe"}}};
    show({item("choice", "mode", {{"label", "Mode:"}, {"choices", choices}})});
    EXPECT_EQ(QApplication::activeModalWidget()->findChild<QComboBox*>("mode")->currentText(), "Fast");
    EXPECT_EQ(form->value("mode"), util::Value("a"));
}
