#pragma once

#include <QToolButton>
#include <QWidget>

#include "qt/adapters/QtConstrainedView.h"
#include "qt/platform/QtRunLoop.h"
#include "qt/widgets/BackgroundPanel.h"
#include "views/CollapsibleView.h"

namespace corvane::qt {

/// Details under a title: a click on the title, or the space key, unfolds them and folds them away. Folded at
/// first.
class FoldingSection final : public QWidget {
public:
    /// Takes `details` into itself.
    FoldingSection(const QString& title, QWidget* details, HandlerGuard& guard);

    [[nodiscard]] QToolButton& title() { return *title_; }
    [[nodiscard]] QWidget& panel() { return *panel_; }
    [[nodiscard]] bool isFolded() const { return folding_.heightCollapsed; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fold(bool folded);

    QToolButton* title_;
    BackgroundPanel* panel_;
    QWidget* details_;
    QtRunLoop runLoop_;
    QtConstrainedView view_;
    views::CollapsibleView folding_;
};

} // namespace corvane::qt
