#include "views/CollapsibleView.h"

#include <cstdint>

#include "util/TextFormat.h"
#include "views/CollapsibleViewAnimationProxy.h"

namespace corvane::views {
namespace {

constexpr double animationIsOver = 1.0; // seconds

void setConstant(toolkit::LayoutConstraint& constraint, double constant, bool animate) {
    if (animate)
        constraint.animator().setConstant(constant);
    else
        constraint.setConstant(constant);
}

} // namespace

CollapsibleView::CollapsibleView(toolkit::ConstrainedView& view, platform::RunLoop& runLoop)
    : view_(view), runLoop_(runLoop) {}

CollapsibleView::Constraint CollapsibleView::firstConstraintFor(toolkit::LayoutAttribute attribute) const {
    for (const auto& constraint : view_.constraints())
        if (constraint->firstItem() == &view_ && constraint->firstAttribute() == attribute) return constraint;
    return nullptr;
}

CollapsibleView::Constraint CollapsibleView::heightConstraint() const {
    return firstConstraintFor(toolkit::LayoutAttribute::height);
}

CollapsibleView::Constraint CollapsibleView::widthConstraint() const {
    return firstConstraintFor(toolkit::LayoutAttribute::width);
}

void CollapsibleView::collapseHeightWithAnimation(bool animate) {
    if (heightCollapsed) return;
    auto constraint = heightConstraint();
    pending_.erase(constraint); // a fold soon after an animated return keeps the constraint and uses it again
    if (!constraint)
        constraint = addHeightConstraint();
    else if (constraint->constant() != 0 && initialHeight == 0)
        initialHeight = constraint->constant();
    setConstant(*constraint, 0, animate);
    heightCollapsed = true;
}

/// The constraint has whole points; the height to bring back keeps its fraction.
CollapsibleView::Constraint CollapsibleView::addHeightConstraint() {
    initialHeight = view_.frame().size.height;
    heightConstraintAdded = true;
    const auto points = std::to_string(static_cast<std::int64_t>(initialHeight));
    const auto made =
        view_.constraintsWithVisualFormat(util::formatted("V:[view(==%ld)]", {points}), {{"view", &view_}});
    view_.addConstraint(made.front());
    return made.front();
}

void CollapsibleView::collapseWidthWithAnimation(bool animate) {
    const auto constraint = widthConstraint();
    if (widthCollapsed || !constraint) return;
    if (constraint->constant() != 0 && initialWidth == 0) initialWidth = constraint->constant();
    setConstant(*constraint, 0, animate);
    widthCollapsed = true;
}

void CollapsibleView::restoreHeightWithAnimation(bool animate) {
    const auto constraint = heightConstraint();
    if (!heightCollapsed || !constraint) return;
    heightCollapsed = false;
    if (initialHeight == 0) return; // nothing is known to bring back
    setConstant(*constraint, initialHeight, animate);
    if (!heightConstraintAdded) return;
    if (animate)
        removeLater(constraint);
    else
        removeAddedHeightConstraint(constraint);
}

/// The width becomes the remembered height, on purpose, and even where that is 0: what is folded sideways
/// here is as wide as it is high, and panels are laid out for that.
void CollapsibleView::restoreWidthWithAnimation(bool animate) {
    const auto constraint = widthConstraint();
    if (!widthCollapsed || !constraint) return;
    setConstant(*constraint, initialHeight, animate);
    widthCollapsed = false;
}

void CollapsibleView::removeLater(const Constraint& constraint) {
    pending_[constraint] = runLoop_.scheduleTimer(animationIsOver, [this, constraint] {
        const auto due = pending_.extract(constraint);
        removeAddedHeightConstraint(constraint);
    });
}

void CollapsibleView::removeAddedHeightConstraint(const Constraint& constraint) {
    heightConstraintAdded = false;
    if (constraint) view_.removeConstraint(*constraint);
}

std::unique_ptr<CollapsibleViewAnimationProxy> CollapsibleView::animationProxy() {
    auto proxy = std::make_unique<CollapsibleViewAnimationProxy>();
    proxy->setCollapsibleView(this);
    return proxy;
}

} // namespace corvane::views
