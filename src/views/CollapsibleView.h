#pragma once

#include <map>
#include <memory>

#include "platform/RunLoop.h"
#include "toolkit/LayoutConstraint.h"

namespace corvane::views {

class CollapsibleViewAnimationProxy;

/// Folds a view's height or width to nothing and brings it back, by the constant of a constraint of the
/// view's. Lengths are points. Main thread.
class CollapsibleView {
public:
    using Constraint = toolkit::ConstrainedView::Constraint;

    /// Both outlive this.
    CollapsibleView(toolkit::ConstrainedView& view, platform::RunLoop& runLoop);
    CollapsibleView(const CollapsibleView&) = delete;
    CollapsibleView& operator=(const CollapsibleView&) = delete;

    /// The first of the view's own constraints about its height; null when there is none.
    [[nodiscard]] Constraint heightConstraint() const;
    /// The same about its width.
    [[nodiscard]] Constraint widthConstraint() const;

    /// The height to bring back; 0 while it isn't known. Recorded by the first fold and kept from then on.
    double initialHeight = 0;
    /// The width at the first fold, likewise.
    double initialWidth = 0;
    bool widthCollapsed = false;
    bool heightCollapsed = false;
    /// The height's constraint was added by a fold and goes when the height is back.
    bool heightConstraintAdded = false;

    /// Without animation.
    void collapseHeight() { collapseHeightWithAnimation(false); }
    void collapseWidth() { collapseWidthWithAnimation(false); }
    void restoreHeight() { restoreHeightWithAnimation(false); }
    void restoreWidth() { restoreWidthWithAnimation(false); }

    /// Does nothing when it is folded already. A view without a constraint about its height gets one.
    void collapseHeightWithAnimation(bool animate);
    /// Does nothing when it is folded already or has no constraint about its width; none is ever added.
    void collapseWidthWithAnimation(bool animate);
    /// Does nothing unless it is folded and has a constraint about its height.
    void restoreHeightWithAnimation(bool animate);
    /// Does nothing unless it is folded and has a constraint about its width. The width becomes
    /// `initialHeight`.
    void restoreWidthWithAnimation(bool animate);

    void removeAddedHeightConstraint(const Constraint& constraint);

    /// A new one each time: the same four commands with animation.
    [[nodiscard]] std::unique_ptr<CollapsibleViewAnimationProxy> animationProxy();

private:
    friend class CollapsibleViewAnimationProxy;
    [[nodiscard]] Constraint firstConstraintFor(toolkit::LayoutAttribute attribute) const;
    [[nodiscard]] Constraint addHeightConstraint();
    void removeLater(const Constraint& constraint);

    toolkit::ConstrainedView& view_;
    platform::RunLoop& runLoop_;
    /// Removals that are still to come.
    std::map<Constraint, std::unique_ptr<platform::Timer>> pending_;
    /// Tells the proxies that the view is gone.
    std::shared_ptr<CollapsibleView*> self_ = std::make_shared<CollapsibleView*>(this);
};

} // namespace corvane::views
