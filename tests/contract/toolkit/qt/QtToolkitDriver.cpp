#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include "contract/toolkit/ToolkitDriver.h"
#include "qt/DeliveredDrag.h"
#include "qt/Text.h"
#include "qt/adapters/QtButton.h"
#include "qt/adapters/QtConstrainedView.h"
#include "qt/adapters/QtNotice.h"
#include "qt/adapters/QtPopUpButton.h"
#include "qt/adapters/QtProgressIndicator.h"
#include "qt/adapters/QtTabView.h"
#include "qt/adapters/QtTableView.h"
#include "qt/adapters/QtTextField.h"
#include "qt/adapters/QtToolbar.h"
#include "qt/adapters/QtToolkit.h"
#include "qt/adapters/QtWindow.h"
#include "qt/look/Appearance.h"
#include "qt/look/PainterCanvas.h"
#include "qt/widgets/AlertPanel.h"

namespace corvane::contract {
namespace {

/// A handler that throws is a failed test here.
class FailingLog final : public util::ProcessLog {
public:
    void log(std::string_view line) override { ADD_FAILURE() << line; }
};

QMainWindow* makeShell() {
    auto* shell = new QMainWindow;
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    for (QWidget* each : std::initializer_list<QWidget*>{new QPushButton("Press"), new QComboBox,
                                                         new QLineEdit, new QProgressBar, new qt::NoticeStrip,
                                                         new qt::TableWidget, new qt::TableWidget})
        layout->addWidget(each);
    for (auto* each : content->findChildren<QFrame*>())
        if (dynamic_cast<qt::NoticeStrip*>(each)) each->setObjectName("notice");
    content->findChild<QComboBox*>()->addItems({"One", "Two", "Three"});
    shell->setCentralWidget(content);
    shell->resize(400, 640);
    return shell;
}

class PageView final : public qt::QtPlainView {
public:
    PageView() : QtView(*new QWidget) { widget().setProperty("tabTitle", "Page"); }
};

/// The real widgets, operated with real mouse and key events.
class QtToolkitDriver final : public ToolkitDriver {
public:
    QtToolkitDriver() {
        notice_.setHidden(true); // it would need room that tests of the window's size count on
        shell_->show();
        if (!QTest::qWaitForWindowExposed(shell_.get())) ADD_FAILURE() << "the window doesn't come up";
    }

    toolkit::Toolkit& toolkit() override { return toolkit_; }
    toolkit::Window& window() override { return window_; }
    toolkit::Window& sheet() override { return sheet_; }
    toolkit::Button& button() override { return button_; }
    toolkit::PopUpButton& popUp() override { return popUp_; }
    toolkit::TextField& textField() override { return textField_; }
    toolkit::ProgressIndicator& progressIndicator() override { return bar_; }
    toolkit::Notice& notice() override {
        notice_.setHidden(false);
        return notice_;
    }
    toolkit::TableView& table() override { return table_; }
    toolkit::TableView& otherTable() override { return otherTable_; }
    toolkit::Canvas& canvas() override { return canvas_; }
    toolkit::ConstrainedView& constrainedView() override { return constrainedView_; }
    std::shared_ptr<toolkit::View> makePageView() override { return std::make_shared<PageView>(); }
    void showTabView(const std::shared_ptr<toolkit::TabView>& tabView) override {
        auto& root = static_cast<qt::QtTabView&>(*tabView).widget();
        shell_->centralWidget()->layout()->addWidget(&root);
        root.show();
        settle();
    }

    bool click(toolkit::Button& button) override {
        auto& widget = static_cast<qt::QtButton&>(button).widget();
        if (!widget.isVisible()) return false; // nobody could aim at it
        const QSignalSpy clicked(static_cast<QAbstractButton*>(&widget), &QAbstractButton::clicked);
        clickAt(widget, widget.rect().center());
        return !clicked.isEmpty();
    }

    bool choose(toolkit::PopUpButton& popUp, int index) override {
        auto& box = static_cast<QComboBox&>(static_cast<qt::QtPopUpButton&>(popUp).widget());
        if (!operable(box)) return false;
        clickAt(box, box.rect().center());
        auto* list = box.view();
        if (!QTest::qWaitFor([&] { return list->isVisible(); })) return false;
        for (int at = list->currentIndex().row(); at != index; at += index > at ? 1 : -1)
            QTest::keyClick(list, index > at ? Qt::Key_Down : Qt::Key_Up);
        QTest::keyClick(list, Qt::Key_Return);
        return QTest::qWaitFor([&] { return !list->isVisible(); });
    }

    bool type(toolkit::TextField& field, const std::string& text) override {
        auto& edit = static_cast<QLineEdit&>(static_cast<qt::QtTextField&>(field).widget());
        if (!operable(edit)) return false;
        replaceText(edit, text);
        QTest::keyClick(&edit, Qt::Key_Return);
        return true;
    }
    void typeAndLeave(toolkit::TextField& field, const std::string& text) override {
        auto& edit = static_cast<QLineEdit&>(static_cast<qt::QtTextField&>(field).widget());
        replaceText(edit, text);
        QTest::keyClick(&edit, Qt::Key_Tab);
        EXPECT_FALSE(edit.hasFocus());
    }
    std::string shownText(toolkit::TextField& field) override {
        return qt::toUtf8(static_cast<QLineEdit&>(static_cast<qt::QtTextField&>(field).widget()).text());
    }
    std::string shownDescription(toolkit::TextField& field) override {
        const auto* formatting = static_cast<qt::QtTextField&>(field).formatting();
        return formatting ? qt::toUtf8(formatting->shownDescription()) : "";
    }

    std::string shownText(toolkit::Notice& notice) override {
        std::string text;
        for (const auto* label : static_cast<qt::QtNotice&>(notice).widget().findChildren<QLabel*>())
            if (label->isVisible()) text += qt::toUtf8(label->text());
        return text;
    }

    bool clickRow(toolkit::TableView& table, int row, bool extending) override {
        auto& view = treeOf(table);
        const auto before = table.selectedRows();
        clickAt(*view.viewport(), cell(view, row, 0).center(),
                extending ? Qt::ControlModifier : Qt::NoModifier);
        return table.selectedRows() != before;
    }
    void doubleClickRow(toolkit::TableView& table, int row) override {
        auto& view = treeOf(table);
        const auto where = cell(view, row, 0).center();
        clickAt(*view.viewport(), where);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, where);
    }
    bool dragRows(toolkit::TableView& from, const std::vector<int>& rows, toolkit::TableView& to,
                  int place) override {
        settle();
        return qt::deliverDrag(treeOf(from), rows, treeOf(to), place);
    }
    void pressAltArrow(toolkit::TableView& table, int step) override {
        auto& view = treeOf(table);
        view.setFocus();
        QTest::keyClick(&view, step < 0 ? Qt::Key_Up : Qt::Key_Down, Qt::AltModifier);
    }
    void pressDelete(toolkit::TableView& table) override {
        auto& view = treeOf(table);
        view.setFocus();
        QTest::keyClick(&view, Qt::Key_Delete);
    }
    void clickCheckBox(toolkit::TableView& table, int row) override {
        auto& view = treeOf(table);
        QStyleOptionViewItem option;
        option.initFrom(&view);
        option.rect = cell(view, row, 1);
        option.features = QStyleOptionViewItem::HasCheckIndicator;
        const auto box = view.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &view);
        clickAt(*view.viewport(), box.center());
    }
    std::string shownText(toolkit::TableView& table, int row) override {
        auto& view = treeOf(table);
        return qt::toUtf8(view.model()->index(row, 0).data().toString());
    }
    std::string shownEmptyMessage(toolkit::TableView& table) override {
        return qt::toUtf8(treeOf(table).accessibleDescription());
    }

    void clickTab(toolkit::TabView& tabView, const std::string& identifier) override {
        auto& bar = *static_cast<qt::QtTabView&>(tabView).tabBar();
        clickAt(bar, bar.tabRect(positionOf(tabView, identifier)).center());
    }
    void clickToolbarItem(toolkit::Toolbar& toolbar, const std::string& identifier) override {
        settle();
        auto* button = static_cast<qt::QtToolbar&>(toolbar).button(identifier);
        ASSERT_NE(button, nullptr);
        ASSERT_TRUE(button->isVisible());
        clickAt(*button, button->rect().center());
    }
    bool clickClose(toolkit::Window& window) override {
        return static_cast<qt::QtWindow&>(window).shell().close();
    }

    void willAnswerModalAlert(int button) override {
        QTimer::singleShot(0, [button] {
            auto* panel = dynamic_cast<qt::AlertPanel*>(QApplication::activeModalWidget());
            ASSERT_NE(panel, nullptr) << "no alert runs";
            answer(*panel, button);
        });
    }
    void answerAlertSheet(int button) override {
        auto* panel = openPanel();
        ASSERT_NE(panel, nullptr) << "no alert is open as a sheet";
        answer(*panel, button);
        settle();
    }
    bool alertSheetIsOpen() override { return openPanel() != nullptr; }
    std::string spokenTextOfAlertSheet() override {
        const auto* panel = openPanel();
        return panel ? qt::toUtf8(panel->accessibleDescription()) : "no alert is open as a sheet";
    }

private:
    static bool operable(const QWidget& widget) { return widget.isEnabled() && widget.isVisible(); }
    static void settle() { QCoreApplication::processEvents(); }
    static void clickAt(QWidget& widget, QPoint where, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        settle();
        QTest::mouseClick(&widget, Qt::LeftButton, keys, where);
    }
    static void replaceText(QLineEdit& edit, const std::string& text) {
        clickAt(edit, edit.rect().center());
        QTest::keyClick(&edit, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&edit, qt::fromUtf8(text));
    }
    static qt::TableWidget& treeOf(toolkit::TableView& table) {
        return static_cast<qt::TableWidget&>(static_cast<qt::QtTableView&>(table).widget());
    }
    static QRect cell(qt::TableWidget& view, int row, int column) {
        settle();
        return view.visualRect(view.model()->index(row, column));
    }
    static void answer(qt::AlertPanel& panel, int button) {
        if (button == toolkit::Alert::closed) return QTest::keyClick(&panel, Qt::Key_Escape);
        auto* pressed = panel.buttons().at(std::size_t(button - 1));
        QTest::mouseClick(pressed, Qt::LeftButton);
    }
    [[nodiscard]] qt::AlertPanel* openPanel() const {
        for (auto* each : shell_->findChildren<QDialog*>())
            if (auto* panel = dynamic_cast<qt::AlertPanel*>(each); panel && panel->isVisible()) return panel;
        return nullptr;
    }
    /// Tabs stand in the order in which the pages were added.
    static int positionOf(toolkit::TabView& tabView, const std::string& identifier) {
        const auto item = tabView.tabViewItemWithIdentifier(identifier);
        auto& page = static_cast<qt::QtTabViewItem&>(*item).page();
        return static_cast<QStackedWidget*>(page.parentWidget())->indexOf(&page);
    }
    template <typename Widget>
    Widget& find() {
        return *shell_->centralWidget()->findChild<Widget*>();
    }

    FailingLog log_;
    qt::HandlerGuard guard_{log_};
    qt::SettingsFile settings_{"", log_};
    qt::QtApplication application_{*qApp, guard_};
    qt::QtToolkit toolkit_{application_, guard_};
    std::unique_ptr<QMainWindow> shell_{makeShell()};
    QWidget sheetShell_;
    QPixmap paper_{100, 100};
    QPainter painter_{&paper_};
    qt::PainterCanvas canvas_{painter_, QPalette(), QFont()};
    qt::QtConstrainedView constrainedView_{*new QWidget(shell_->centralWidget())};
    qt::QtWindow window_{*shell_, *shell_->centralWidget(), guard_, settings_};
    qt::QtWindow sheet_{sheetShell_, sheetShell_, guard_, settings_};
    qt::QtButton button_{find<QPushButton>(), guard_};
    qt::QtPopUpButton popUp_{find<QComboBox>(), guard_};
    qt::QtTextField textField_{find<QLineEdit>(), guard_};
    qt::QtProgressIndicator bar_{find<QProgressBar>()};
    qt::QtNotice notice_{
        static_cast<qt::NoticeStrip&>(*shell_->centralWidget()->findChild<QFrame*>("notice"))};
    qt::QtTableView table_{
        static_cast<qt::TableWidget&>(find<QTreeView>()), {{"Name", "Name"}, {"On", "On"}}, guard_};
    qt::QtTableView otherTable_{
        static_cast<qt::TableWidget&>(*shell_->centralWidget()->findChildren<QTreeView*>().at(1)),
        {{"Name", "Name"}},
        guard_};
};

} // namespace

std::unique_ptr<ToolkitDriver> makeToolkitDriver() { return std::make_unique<QtToolkitDriver>(); }

} // namespace corvane::contract
