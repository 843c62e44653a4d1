#pragma once

#include <memory>

#include "views/CollapsibleView.h"

namespace corvane::views {

/// Does with animation what it is told. It doesn't keep its view alive; once that is gone, or while there is
/// none, commands do nothing. Main thread.
class CollapsibleViewAnimationProxy final {
public:
    /// Null when there is none, or it is gone.
    [[nodiscard]] CollapsibleView* collapsibleView() const {
        const auto view = view_.lock();
        return view ? *view : nullptr;
    }
    void setCollapsibleView(CollapsibleView* view) {
        view_ = view ? view->self_ : std::weak_ptr<CollapsibleView*>();
    }

    void collapseHeight() { tell(&CollapsibleView::collapseHeightWithAnimation); }
    void collapseWidth() { tell(&CollapsibleView::collapseWidthWithAnimation); }
    void restoreHeight() { tell(&CollapsibleView::restoreHeightWithAnimation); }
    void restoreWidth() { tell(&CollapsibleView::restoreWidthWithAnimation); }

private:
    void tell(void (CollapsibleView::*command)(bool animate)) {
        if (auto* view = collapsibleView()) (view->*command)(true);
    }
    std::weak_ptr<CollapsibleView*> view_;
};

} // namespace corvane::views
