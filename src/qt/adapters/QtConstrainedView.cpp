#include "qt/adapters/QtConstrainedView.h"

#include <QStyle>
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "views/VisualFormat.h"

namespace corvane::qt {

namespace {

void setActive(toolkit::LayoutConstraint& constraint, bool active) {
    if (auto* ours = dynamic_cast<QtLayoutConstraint*>(&constraint)) ours->setActive(active);
}

} // namespace

QtLayoutConstraint::QtLayoutConstraint(const toolkit::View& item, QWidget& widget,
                                       toolkit::LayoutAttribute attribute, double constant)
    : item_(item), widget_(&widget), attribute_(attribute), constant_(constant) {
    animation_.setEasingCurve(QEasingCurve::InOutQuad);
    QObject::connect(&animation_, &QVariantAnimation::valueChanged, &animation_,
                     [this](const QVariant& length) { hold(length.toDouble()); });
}

QtLayoutConstraint::~QtLayoutConstraint() { setActive(false); }

void QtLayoutConstraint::setConstant(double constant) {
    animation_.stop();
    constant_ = constant;
    hold(constant);
}

void QtLayoutConstraint::animateTo(double constant) {
    animation_.stop();
    const int duration = widget_ ? widget_->style()->styleHint(QStyle::SH_Widget_Animation_Duration) : 0;
    if (!active_ || duration <= 0 || !widget_->isVisible()) return setConstant(constant);
    constant_ = constant;
    animation_.setDuration(duration);
    animation_.setStartValue(double(lengthNow()));
    animation_.setEndValue(constant);
    animation_.start();
}

void QtLayoutConstraint::setActive(bool active) {
    if (active == active_) return;
    active_ = active;
    animation_.stop();
    if (active) before_ = limits();
    active ? hold(constant_) : setLimits(before_);
}

void QtLayoutConstraint::hold(double length) {
    const int pixels = std::clamp(int(std::lround(length)), 0, QWIDGETSIZE_MAX);
    if (active_) setLimits({pixels, pixels});
}

void QtLayoutConstraint::setLimits(Limits limits) {
    if (!widget_) return;
    if (attribute_ == toolkit::LayoutAttribute::height) {
        widget_->setMinimumHeight(limits.least);
        widget_->setMaximumHeight(limits.most);
    } else if (attribute_ == toolkit::LayoutAttribute::width) {
        widget_->setMinimumWidth(limits.least);
        widget_->setMaximumWidth(limits.most);
    }
}

QtLayoutConstraint::Limits QtLayoutConstraint::limits() const {
    if (!widget_) return {};
    if (attribute_ == toolkit::LayoutAttribute::height)
        return {widget_->minimumHeight(), widget_->maximumHeight()};
    return {widget_->minimumWidth(), widget_->maximumWidth()};
}

int QtLayoutConstraint::lengthNow() const {
    return attribute_ == toolkit::LayoutAttribute::height ? widget_->height() : widget_->width();
}

QtConstrainedView::~QtConstrainedView() {
    for (const auto& held : held_)
        setActive(*held, false);
}

void QtConstrainedView::addConstraint(Constraint constraint) {
    setActive(*constraint, true);
    held_.push_back(std::move(constraint));
}

void QtConstrainedView::removeConstraint(const toolkit::LayoutConstraint& constraint) {
    const auto found = std::ranges::find(held_, &constraint, [](const auto& held) { return held.get(); });
    if (found == held_.end()) return;
    setActive(**found, false);
    held_.erase(found);
}

std::vector<toolkit::ConstrainedView::Constraint>
QtConstrainedView::constraintsWithVisualFormat(std::string_view format,
                                               const std::map<std::string, toolkit::View*>& views) {
    const auto parsed = views::VisualFormat::fromText(format);
    const auto view = views.find(parsed.viewName);
    auto* widget = view == views.end() ? nullptr : widgetOf(view->second);
    if (!widget) throw std::invalid_argument("no view is named " + parsed.viewName);
    return {std::make_shared<QtLayoutConstraint>(*view->second, *widget, parsed.attribute, parsed.constant)};
}

} // namespace corvane::qt
