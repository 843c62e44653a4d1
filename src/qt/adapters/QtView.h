#pragma once

#include <QWidget>

#include "toolkit/View.h"

namespace corvane::qt {

/// What every adapter has in common: the widget behind it.
class WidgetBacked {
public:
    virtual ~WidgetBacked() = default;
    [[nodiscard]] virtual QWidget& widget() const = 0;
};

/// The widget behind a view of this toolkit; null for any other view.
[[nodiscard]] QWidget* widgetOf(const toolkit::View* view);
/// The window that shows `widget`; null when it isn't in one of ours.
[[nodiscard]] toolkit::Window* windowOf(const QWidget& widget);
/// Position in the parent, y growing upwards from the parent's lower edge.
[[nodiscard]] toolkit::Rect frameOf(const QWidget& widget);

/// `Interface` (a view or one of its kinds) on a widget that the window's widget tree owns. The widget
/// outlives the use of the adapter; the adapter may go first.
template <typename Interface, typename Widget>
class QtView : public Interface, public WidgetBacked {
public:
    explicit QtView(Widget& view) : widget_(view) {}
    QtView(const QtView&) = delete;
    QtView& operator=(const QtView&) = delete;

    void setHidden(bool hidden) override { widget_.setVisible(!hidden); }
    [[nodiscard]] bool isHidden() const override { return widget_.isHidden(); }
    [[nodiscard]] toolkit::Rect frame() const override { return frameOf(widget_); }
    [[nodiscard]] toolkit::Window* window() const override { return windowOf(widget_); }
    [[nodiscard]] QWidget& widget() const override { return widget_; }

protected:
    Widget& widget_;
    QObject context_; ///< receiver of the widget's signals: connections end with the adapter
};

/// A view without behaviour: a label, a page.
using QtPlainView = QtView<toolkit::View, QWidget>;

/// `Interface` (a kind of control) on a widget.
template <typename Interface, typename Widget>
class QtControl : public QtView<Interface, Widget> {
public:
    using QtView<Interface, Widget>::QtView;

    void setEnabled(bool enabled) override { this->widget_.setEnabled(enabled); }
    /// The control's own state: what it is in may be disabled for the time that a sheet is shown.
    [[nodiscard]] bool isEnabled() const override {
        return this->widget_.isEnabledTo(this->widget_.parentWidget());
    }
    void setAction(toolkit::Control::Action action) override { action_ = std::move(action); }

protected:
    /// Runs on a copy, so that an action may give the control another one.
    void runAction() {
        if (const auto action = action_) action(*this);
    }

private:
    toolkit::Control::Action action_;
};

} // namespace corvane::qt
