#include "contract/toolkit/ToolkitDriver.h"
#include "fakes/FakeLayout.h"
#include "fakes/FakeToolkit.h"
#include "fakes/RecordingCanvas.h"

namespace corvane::contract {
namespace {

using namespace fakes;

/// The stand-ins that the program's own tests use.
class FakeToolkitDriver final : public ToolkitDriver {
public:
    FakeToolkitDriver() {
        window_.orderFront();
        button_.setWindow(&window_);
        popUp_.selectItemAtIndex(0);
    }

    toolkit::Toolkit& toolkit() override { return toolkit_; }
    toolkit::Window& window() override { return window_; }
    toolkit::Window& sheet() override { return sheet_; }
    toolkit::Button& button() override { return button_; }
    toolkit::PopUpButton& popUp() override { return popUp_; }
    toolkit::TextField& textField() override { return textField_; }
    toolkit::ProgressIndicator& progressIndicator() override { return bar_; }
    toolkit::Notice& notice() override { return notice_; }
    toolkit::TableView& table() override { return table_; }
    toolkit::TableView& otherTable() override { return otherTable_; }
    toolkit::Canvas& canvas() override { return canvas_; }
    toolkit::ConstrainedView& constrainedView() override { return constrainedView_; }
    std::shared_ptr<toolkit::View> makePageView() override {
        return std::make_shared<FakeView>(journal_, "page");
    }
    void showTabView(const std::shared_ptr<toolkit::TabView>& tabView) override {
        static_cast<FakeTabView&>(*tabView).setWindow(&window_);
    }

    bool click(toolkit::Button& button) override {
        return operates(button, [&] { static_cast<FakeButton&>(button).click(); });
    }
    bool choose(toolkit::PopUpButton& popUp, int index) override {
        return operates(popUp, [&] { static_cast<FakePopUpButton&>(popUp).choose(index); });
    }
    bool type(toolkit::TextField& field, const std::string& text) override {
        return operates(field, [&] { static_cast<FakeTextField&>(field).type(text); });
    }
    void typeAndLeave(toolkit::TextField& field, const std::string& text) override {
        static_cast<FakeTextField&>(field).typeAndLeave(text);
    }
    std::string shownText(toolkit::TextField& field) override {
        return static_cast<FakeTextField&>(field).shownText();
    }
    std::string shownDescription(toolkit::TextField& field) override {
        return static_cast<FakeTextField&>(field).shownDescription();
    }
    std::string shownText(toolkit::Notice& notice) override {
        auto& fake = static_cast<FakeNotice&>(notice);
        return fake.shownMessage() + fake.shownInformation();
    }
    bool clickRow(toolkit::TableView& table, int row, bool extending) override {
        return static_cast<FakeTableView&>(table).clickRow(row, extending);
    }
    void doubleClickRow(toolkit::TableView& table, int row) override {
        static_cast<FakeTableView&>(table).doubleClickRow(row);
    }
    bool dragRows(toolkit::TableView& from, const std::vector<int>& rows, toolkit::TableView& to,
                  int place) override {
        return static_cast<FakeTableView&>(from).dragRows(rows, static_cast<FakeTableView&>(to), place);
    }
    void pressAltArrow(toolkit::TableView& table, int step) override {
        (void)static_cast<FakeTableView&>(table).pressAltArrow(step);
    }
    void pressDelete(toolkit::TableView& table) override { static_cast<FakeTableView&>(table).pressDelete(); }
    void clickCheckBox(toolkit::TableView& table, int row) override {
        auto& fake = static_cast<FakeTableView&>(table);
        fake.toggleCheckBox("On", row, !fake.isCheckedAt("On", row));
    }
    std::string shownText(toolkit::TableView& table, int row) override {
        return static_cast<FakeTableView&>(table).textAt("Name", row);
    }
    std::string shownEmptyMessage(toolkit::TableView& table) override {
        return static_cast<FakeTableView&>(table).shownEmptyMessage();
    }
    void clickTab(toolkit::TabView& tabView, const std::string& identifier) override {
        static_cast<FakeTabView&>(tabView).clickTab(identifier);
    }
    void clickToolbarItem(toolkit::Toolbar& toolbar, const std::string& identifier) override {
        static_cast<FakeToolbar&>(toolbar).clickItem(identifier);
    }
    bool clickClose(toolkit::Window& window) override {
        return static_cast<FakeWindow&>(window).clickClose();
    }
    void willAnswerModalAlert(int button) override { toolkit_.willAnswer(button); }
    void answerAlertSheet(int button) override { toolkit_.answerSheet(button); }
    bool alertSheetIsOpen() override { return toolkit_.sheetIsOpen(); }
    std::string spokenTextOfAlertSheet() override {
        const auto& shown = toolkit_.alerts().back();
        return shown.spoken.empty() ? shown.information : shown.spoken;
    }

private:
    /// The stand-ins fail the test when they can't be operated; here that is an answer.
    template <typename Gesture>
    static bool operates(const toolkit::Control& control, Gesture gesture) {
        const bool can = control.isEnabled() && !control.isHidden();
        if (can) gesture();
        return can;
    }

    Journal journal_;
    FakeToolkit toolkit_{journal_};
    FakeWindow window_{journal_, "window"};
    FakeWindow sheet_{journal_, "sheet"};
    FakeButton button_{journal_, "button"};
    FakePopUpButton popUp_{journal_, "popUp", {"One", "Two", "Three"}};
    FakeTextField textField_{journal_, "textField"};
    FakeProgressIndicator bar_{journal_, "bar"};
    FakeNotice notice_{journal_, "notice"};
    RecordingCanvas canvas_;
    FakeConstrainedView constrainedView_{journal_, "constrainedView"};
    FakeTableView table_{journal_, "table", {"Name", "On"}};
    FakeTableView otherTable_{journal_, "otherTable", {"Name"}};
};

} // namespace

std::unique_ptr<ToolkitDriver> makeToolkitDriver() { return std::make_unique<FakeToolkitDriver>(); }

} // namespace corvane::contract
