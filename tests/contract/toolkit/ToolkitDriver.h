#pragma once

#include <memory>

#include "toolkit/Canvas.h"
#include "toolkit/Controls.h"
#include "toolkit/LayoutConstraint.h"
#include "toolkit/TableView.h"
#include "toolkit/Toolkit.h"

namespace corvane::contract {

/// Makes the objects of one toolkit and operates them as a user does. The suites in this folder know toolkits
/// through this alone, so that they say the same of each. Objects live as long as the driver.
///
/// Gestures answer whether a user could make them: a click on a disabled button can't be made.
class ToolkitDriver {
public:
    virtual ~ToolkitDriver() = default;

    [[nodiscard]] virtual toolkit::Toolkit& toolkit() = 0;
    /// A window on the screen, in which everything below is shown.
    [[nodiscard]] virtual toolkit::Window& window() = 0;
    /// A window that isn't on the screen, fit to be a sheet.
    [[nodiscard]] virtual toolkit::Window& sheet() = 0;
    [[nodiscard]] virtual toolkit::Button& button() = 0;
    /// Items "One", "Two" and "Three"; the first is chosen.
    [[nodiscard]] virtual toolkit::PopUpButton& popUp() = 0;
    [[nodiscard]] virtual toolkit::TextField& textField() = 0;
    [[nodiscard]] virtual toolkit::ProgressIndicator& progressIndicator() = 0;
    [[nodiscard]] virtual toolkit::Notice& notice() = 0;
    /// Columns "Name" and "On".
    [[nodiscard]] virtual toolkit::TableView& table() = 0;
    /// Column "Name".
    [[nodiscard]] virtual toolkit::TableView& otherTable() = 0;
    /// Something to draw on.
    [[nodiscard]] virtual toolkit::Canvas& canvas() = 0;
    /// A view in the window, without constraints.
    [[nodiscard]] virtual toolkit::ConstrainedView& constrainedView() = 0;
    /// A view to put on a page.
    [[nodiscard]] virtual std::shared_ptr<toolkit::View> makePageView() = 0;
    /// Shows a tab view that the toolkit made in the window.
    virtual void showTabView(const std::shared_ptr<toolkit::TabView>& tabView) = 0;

    virtual bool click(toolkit::Button& button) = 0;
    virtual bool choose(toolkit::PopUpButton& popUp, int index) = 0;
    /// Replaces the text and ends the edit with the return key.
    virtual bool type(toolkit::TextField& field, const std::string& text) = 0;
    /// Replaces the text and takes the keyboard elsewhere.
    virtual void typeAndLeave(toolkit::TextField& field, const std::string& text) = 0;
    /// What stands in the field, accepted or not.
    [[nodiscard]] virtual std::string shownText(toolkit::TextField& field) = 0;
    /// What stands beside the field about a refused text; "" for nothing.
    [[nodiscard]] virtual std::string shownDescription(toolkit::TextField& field) = 0;
    /// What stands on the strip, one text behind the other; "" while it is hidden.
    [[nodiscard]] virtual std::string shownText(toolkit::Notice& notice) = 0;
    virtual bool clickRow(toolkit::TableView& table, int row, bool extending = false) = 0;
    virtual void doubleClickRow(toolkit::TableView& table, int row) = 0;
    /// Drags rows and drops them above the row `place`, or behind the last where that is the count. False
    /// when the drag can't begin, isn't taken there, or nothing comes of it.
    virtual bool dragRows(toolkit::TableView& from, const std::vector<int>& rows, toolkit::TableView& to,
                          int place) = 0;
    /// Presses Alt and the arrow up (-1) or down (1).
    virtual void pressAltArrow(toolkit::TableView& table, int step) = 0;
    virtual void pressDelete(toolkit::TableView& table) = 0;
    /// Clicks the check box in column "On".
    virtual void clickCheckBox(toolkit::TableView& table, int row) = 0;
    /// The text that column "Name" shows in a row.
    [[nodiscard]] virtual std::string shownText(toolkit::TableView& table, int row) = 0;
    /// What stands in place of rows, as it is read out; "" while there are some.
    [[nodiscard]] virtual std::string shownEmptyMessage(toolkit::TableView& table) = 0;
    virtual void clickTab(toolkit::TabView& tabView, const std::string& identifier) = 0;
    virtual void clickToolbarItem(toolkit::Toolbar& toolbar, const std::string& identifier) = 0;
    /// The window's close button; false when it stays open.
    virtual bool clickClose(toolkit::Window& window) = 0;
    /// Makes the user answer the next modal alert with that button, counting from 1.
    virtual void willAnswerModalAlert(int button) = 0;
    virtual void answerAlertSheet(int button) = 0;
    [[nodiscard]] virtual bool alertSheetIsOpen() = 0;
    /// What is read out of the open alert's sheet behind its message.
    [[nodiscard]] virtual std::string spokenTextOfAlertSheet() = 0;
};

/// Defined once for each toolkit and linked in.
[[nodiscard]] std::unique_ptr<ToolkitDriver> makeToolkitDriver();

} // namespace corvane::contract
