#pragma once

#include <QPointer>
#include <QToolButton>
#include <QWidget>
#include <vector>

#include "qt/HandlerGuard.h"
#include "toolkit/Toolbar.h"

namespace corvane::qt {

/// Icons over their labels in a row under the title bar. Each button takes the keyboard focus; the arrow keys
/// move it along the row, space and return press.
class QtToolbar final : public toolkit::Toolbar {
public:
    QtToolbar(std::string identifier, HandlerGuard& guard);
    ~QtToolbar() override;
    QtToolbar(const QtToolbar&) = delete;
    QtToolbar& operator=(const QtToolbar&) = delete;

    [[nodiscard]] std::string identifier() const override { return identifier_; }
    /// Makes the default items.
    void setDelegate(toolkit::ToolbarDelegate* delegate) override;
    /// There is nothing to customize, and so nothing to keep.
    void setAutosavesConfiguration(bool) override {}
    void setAllowsUserCustomization(bool) override {}
    void setVisible(bool visible) override;
    void setSelectedItemIdentifier(const std::optional<std::string>& identifier) override;
    [[nodiscard]] std::optional<std::string> selectedItemIdentifier() const override;
    [[nodiscard]] std::vector<toolkit::ToolbarItem> items() const override;

    /// The row itself, for the window that shows it. Belongs to that window then, to the toolbar before.
    [[nodiscard]] QWidget& widget() const { return *row_; }
    /// Null when there is no such item.
    [[nodiscard]] QToolButton* button(std::string_view identifier) const;

private:
    struct Entry {
        toolkit::ToolbarItem item;
        QToolButton* button;
        bool selectable;
    };
    void addItem(toolkit::ToolbarItem item, bool selectable);
    void clicked(const std::string& identifier);
    [[nodiscard]] const Entry* entry(std::string_view identifier) const;
    void validate();

    std::string identifier_;
    HandlerGuard& guard_;
    QPointer<QWidget> row_;
    toolkit::ToolbarDelegate* delegate_ = nullptr;
    std::vector<Entry> entries_;
    std::optional<std::string> selected_;
    QObject context_;
};

} // namespace corvane::qt
