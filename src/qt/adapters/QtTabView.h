#pragma once

#include <QPointer>
#include <QStackedWidget>
#include <QTabBar>
#include <vector>

#include "qt/HandlerGuard.h"
#include "qt/adapters/QtView.h"
#include "toolkit/TabView.h"

namespace corvane::qt {

class QtTabViewItem final : public toolkit::TabViewItem {
public:
    QtTabViewItem(std::string identifier, QString title, QWidget& page)
        : identifier_(std::move(identifier)), title_(std::move(title)), page_(page) {}
    [[nodiscard]] std::string identifier() const override { return identifier_; }
    [[nodiscard]] const QString& title() const { return title_; }
    [[nodiscard]] QWidget& page() const { return page_; }

    /// Keeps the view behind the page alive as long as the page.
    std::shared_ptr<toolkit::View> view;

private:
    std::string identifier_;
    QString title_;
    QWidget& page_;
};

/// Pages with or without a visible row of tabs.
class QtTabView final : public toolkit::TabView, public WidgetBacked {
public:
    /// On the pages of an interface file: a page's property "tabIdentifier" names it, "tabTitle" is on its
    /// tab. The tabs aren't shown: something else switches the pages.
    QtTabView(QStackedWidget& pages, HandlerGuard& guard);
    /// Empty, with visible tabs; makes its own widgets and owns them until they are put into a window.
    explicit QtTabView(HandlerGuard& guard);
    ~QtTabView() override;
    QtTabView(const QtTabView&) = delete;
    QtTabView& operator=(const QtTabView&) = delete;

    void setHidden(bool hidden) override;
    [[nodiscard]] bool isHidden() const override;
    [[nodiscard]] toolkit::Rect frame() const override;
    [[nodiscard]] toolkit::Window* window() const override;
    [[nodiscard]] QWidget& widget() const override { return *root_; }

    void setDelegate(toolkit::TabViewDelegate* delegate) override { delegate_ = delegate; }
    void setAutoresizingMask(unsigned mask) override;
    void addTabViewItem(std::shared_ptr<toolkit::TabViewItem> item) override;
    [[nodiscard]] std::shared_ptr<toolkit::TabViewItem>
    tabViewItemWithIdentifier(std::string_view identifier) override;
    void removeTabViewItem(const toolkit::TabViewItem& item) override;
    void selectTabViewItemWithIdentifier(std::string_view identifier) override;
    [[nodiscard]] std::shared_ptr<toolkit::TabViewItem> selectedTabViewItem() const override;

    /// Null where the tabs aren't shown.
    [[nodiscard]] QTabBar* tabBar() const { return bar_; }

private:
    void tabChosen(int index);
    /// Shows the page of the selected item and marks its tab.
    void takeTabKeyBefore(QWidget& page);
    void showSelected();

    QPointer<QWidget> root_;
    QStackedWidget* pages_;
    QTabBar* bar_ = nullptr;
    HandlerGuard& guard_;
    toolkit::TabViewDelegate* delegate_ = nullptr;
    std::vector<std::shared_ptr<QtTabViewItem>> items_;
    int selected_ = -1;
    QObject context_;
};

} // namespace corvane::qt
