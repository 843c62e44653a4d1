#include "qt/widgets/FieldFormatting.h"

#include <QClipboard>
#include <QLabel>
#include <QVBoxLayout>

#include "qt/QtHarness.h"
#include "qt/adapters/QtTextField.h"

namespace corvane::qt {
namespace {

/// Accepts even numbers of at most four digits; beeps at other characters.
class EvenFormatter final : public toolkit::Formatter {
public:
    std::optional<std::string> stringForObjectValue(const util::Value& value) const override {
        return value.description();
    }
    bool getObjectValueForString(util::Value* value, std::optional<std::string_view> string,
                                 std::string* description) override {
        if (fails) throw std::runtime_error("no rule");
        if (!string->empty() && (string->back() - '0') % 2 != 0) {
            *description = "The number must be even.";
            return false;
        }
        ++commits;
        *value = string->substr(std::min(string->find_first_not_of('0'), string->size()));
        return true;
    }
    bool isPartialStringValid(std::string_view text, std::optional<std::string>* instead,
                              std::string*) override {
        if (text == "9999") *instead = "8888";
        const bool valid = text.find_first_not_of("0123456789") == std::string_view::npos &&
                           text.size() <= 4 && text != "9999";
        if (!valid) ++beeps;
        return valid;
    }
    bool isPartialEditValid(std::string& text, toolkit::TextRange& selection, std::string_view original,
                            toolkit::TextRange originalSelection, std::string* description) override {
        if (failsWhileTyping) throw std::runtime_error("no rule for typing");
        if (text == "777") {
            text = "\U0001F60078";
            selection = {1, 0};
            return false;
        }
        lastOriginal = original;
        lastSelection = originalSelection;
        return Formatter::isPartialEditValid(text, selection, original, originalSelection, description);
    }
    int beeps = 0;
    int commits = 0;
    bool fails = false;
    bool failsWhileTyping = false;
    std::string lastOriginal;
    toolkit::TextRange lastSelection;
};

class FieldFormattingTest : public testing::Test {
protected:
    FieldFormattingTest() {
        field_.setFormatter(formatter_);
        edit_->setGeometry(10, 10, 120, 26);
        other_->setGeometry(10, 80, 120, 26);
        window_.resize(400, 120);
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
        edit_->setFocus();
    }
    void type(const QString& text) { QTest::keyClicks(edit_, text); }
    [[nodiscard]] QLabel* message() const { return window_.findChild<QLabel*>("fieldMessage"); }

    QtHarness qt_;
    QWidget window_;
    QLineEdit* edit_ = new QLineEdit(&window_);
    QLineEdit* other_ = new QLineEdit(&window_);
    std::shared_ptr<EvenFormatter> formatter_ = std::make_shared<EvenFormatter>();
    QtTextField field_{*edit_, qt_.guard};
};

TEST_F(FieldFormattingTest, ARefusedKeyLeavesTextAndCursorAndBeepsOnce) {
    field_.setStringValue("1234");
    edit_->setCursorPosition(2);
    type("x");
    EXPECT_EQ(edit_->text(), "1234");
    EXPECT_EQ(edit_->cursorPosition(), 2);
    EXPECT_EQ(formatter_->beeps, 1);
    type("5");
    EXPECT_EQ(edit_->text(), "1234") << "a fifth digit";
    EXPECT_EQ(formatter_->beeps, 2);
}

TEST_F(FieldFormattingTest, ARefusedKeyOverASelectionLeavesTheSelection) {
    field_.setStringValue("1234");
    edit_->setSelection(1, 2);
    type("x");
    EXPECT_EQ(edit_->text(), "1234");
    EXPECT_EQ(edit_->selectedText(), "23");
    EXPECT_EQ(formatter_->lastSelection, (toolkit::TextRange{1, 2}));
    type("5");
    EXPECT_EQ(edit_->text(), "154");
    EXPECT_EQ(formatter_->lastOriginal, "1234");
}

TEST_F(FieldFormattingTest, ARefusedPasteLeavesTheText) {
    field_.setStringValue("12");
    edit_->setCursorPosition(1);
    QGuiApplication::clipboard()->setText("a b");
    QTest::keyClick(edit_, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit_->text(), "12");
    EXPECT_EQ(edit_->cursorPosition(), 1);
    QGuiApplication::clipboard()->setText("77");
    QTest::keyClick(edit_, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit_->text(), "1772");
}

TEST_F(FieldFormattingTest, UndoingGoesThroughAcceptedTextsAlone) {
    type("1x2");
    QTest::keyClick(edit_, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(edit_->text().contains('x'));
}

TEST_F(FieldFormattingTest, ARefusalMayPutAnotherTextThere) {
    type("9999");
    EXPECT_EQ(edit_->text(), "8888");
}

TEST_F(FieldFormattingTest, ARefusalMayPutTheCursorElsewhereCountedInCharacters) {
    type("777");
    EXPECT_EQ(edit_->text().toStdString(), "\U0001F60078");
    EXPECT_EQ(edit_->cursorPosition(), 2) << "Qt counts the first character twice";
    edit_->setSelection(0, 3);
    type("x");
    EXPECT_EQ(formatter_->lastSelection, (toolkit::TextRange{0, 2}));
}

TEST_F(FieldFormattingTest, TheReturnKeyRunsTheActionUnlessTheTextIsRefused) {
    int runs = 0;
    field_.setAction([&](toolkit::Control&) { ++runs; });
    type("13");
    QTest::keyClick(edit_, Qt::Key_Return);
    EXPECT_EQ(runs, 0);
    type("6");
    QTest::keyClick(edit_, Qt::Key_Return);
    EXPECT_EQ(runs, 1);
}

TEST_F(FieldFormattingTest, ACommitShowsTheValueAndIsMadeOnce) {
    type("0012");
    QTest::keyClick(edit_, Qt::Key_Return);
    EXPECT_EQ(edit_->text(), "12");
    QTest::keyClick(edit_, Qt::Key_Return);
    other_->setFocus();
    EXPECT_EQ(field_.stringValue(), "12");
    EXPECT_EQ(formatter_->commits, 1);
}

TEST_F(FieldFormattingTest, AFormatterThatFailsWhileTypingRefusesTheKey) {
    formatter_->failsWhileTyping = true;
    type("1");
    EXPECT_EQ(edit_->text(), "");
    ASSERT_FALSE(qt_.log.lines.empty());
    EXPECT_EQ(qt_.log.lines[0], "Exception while handling an edit: no rule for typing");
}

TEST_F(FieldFormattingTest, TheProgramMaySetWhatNobodyCouldType) {
    field_.setStringValue("none");
    EXPECT_EQ(edit_->text(), "none");
    EXPECT_EQ(formatter_->beeps, 0);
    type("1");
    EXPECT_EQ(edit_->text(), "none") << "and typing is judged all the same";
}

TEST_F(FieldFormattingTest, ARefusedTextShowsItsReasonBesideTheFieldUntilItIsGoodAgain) {
    edit_->setAccessibleDescription("Port");
    field_.setFormatter(formatter_);
    type("13");
    EXPECT_EQ(message(), nullptr);
    QTest::keyClick(edit_, Qt::Key_Return);
    ASSERT_NE(message(), nullptr);
    EXPECT_TRUE(message()->isVisible());
    EXPECT_EQ(message()->text(), "The number must be even.");
    EXPECT_EQ(edit_->accessibleDescription(), "The number must be even.");
    EXPECT_GE(message()->x(), edit_->geometry().right());
    EXPECT_FALSE(message()->geometry().intersects(edit_->geometry()));
    type("5");
    EXPECT_TRUE(message()->isVisible());
    type("6");
    EXPECT_FALSE(message()->isVisible());
    EXPECT_EQ(edit_->accessibleDescription(), "Port");
    EXPECT_EQ(field_.stringValue(), "1356");
}

TEST_F(FieldFormattingTest, WithoutRoomAtTheSideTheReasonStandsUnderTheField) {
    edit_->setGeometry(10, 10, 380, 26);
    type("1");
    QTest::keyClick(edit_, Qt::Key_Return);
    ASSERT_NE(message(), nullptr);
    EXPECT_GT(message()->y(), edit_->geometry().bottom());
    EXPECT_LE(message()->geometry().right(), window_.width());
    edit_->move(10, 40);
    EXPECT_GT(message()->y(), edit_->geometry().bottom()) << "it goes where the field goes";
    edit_->hide();
    EXPECT_FALSE(message()->isVisible());
    edit_->show();
    EXPECT_TRUE(message()->isVisible());
}

TEST_F(FieldFormattingTest, LeavingTheFieldCommitsToo) {
    type("13");
    QTest::mouseClick(other_, Qt::LeftButton);
    EXPECT_TRUE(other_->hasFocus());
    ASSERT_NE(message(), nullptr);
    EXPECT_EQ(field_.stringValue(), "");
    EXPECT_EQ(edit_->text(), "13");
}

TEST_F(FieldFormattingTest, AskingForTheValueEndsTheEdit) {
    type("12");
    EXPECT_EQ(field_.stringValue(), "12");
}

TEST_F(FieldFormattingTest, WhereTheActionRunsWhileTypingTheTypedTextIsThere) {
    field_.setSendsActionWhileTyping(true);
    std::vector<std::string> seen;
    field_.setAction([&](toolkit::Control&) { seen.push_back(field_.stringValue()); });
    type("1x3");
    EXPECT_EQ(seen, (std::vector<std::string>{"1", "13"}));
}

TEST_F(FieldFormattingTest, AFormatterThatFailsRefusesAndIsLogged) {
    formatter_->fails = true;
    type("12");
    QTest::keyClick(edit_, Qt::Key_Return);
    EXPECT_EQ(field_.stringValue(), "");
    ASSERT_FALSE(qt_.log.lines.empty());
    EXPECT_EQ(qt_.log.lines[0], "Exception while handling the end of an edit: no rule");
}

TEST(FieldFormattingAlone, TheFieldMayGoFirst) {
    auto edit = std::make_unique<QLineEdit>();
    FieldFormatting formatting(*edit, {[](auto&) { return true; },
                                       [](auto& text) {
                                           return FieldFormatting::Commit{true, text, ""};
                                       }});
    edit.reset();
    EXPECT_FALSE(formatting.commit());
    formatting.setText("x");
}

} // namespace
} // namespace corvane::qt
