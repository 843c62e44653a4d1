#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "toolkit/View.h"

namespace corvane::toolkit {

class TabView;

/// One page: an identifier and the view that the page shows.
class TabViewItem {
public:
    virtual ~TabViewItem() = default;
    [[nodiscard]] virtual std::string identifier() const = 0;
};

class TabViewDelegate {
public:
    virtual ~TabViewDelegate() = default;
    [[nodiscard]] virtual bool shouldSelectTabViewItem(TabView& tabView, const TabViewItem& item) = 0;
    virtual void willSelectTabViewItem(TabView& tabView, const TabViewItem& item) = 0;
    virtual void didSelectTabViewItem(TabView& tabView, const TabViewItem& item) = 0;
};

/// Pages of which one is shown. A page that is added to an empty tab view becomes the selected one without
/// the delegate hearing of it, and so does the neighbour of a selected page that is removed.
class TabView : public View {
public:
    /// Bits of `setAutoresizingMask`.
    static constexpr unsigned widthSizable = 2;
    static constexpr unsigned heightSizable = 16;

    virtual void setDelegate(TabViewDelegate* delegate) = 0;
    virtual void setAutoresizingMask(unsigned mask) = 0;
    virtual void addTabViewItem(std::shared_ptr<TabViewItem> item) = 0;
    /// Null when there is no such page.
    [[nodiscard]] virtual std::shared_ptr<TabViewItem>
    tabViewItemWithIdentifier(std::string_view identifier) = 0;
    virtual void removeTabViewItem(const TabViewItem& item) = 0;
    /// By the user or by the program alike: the delegate is asked, told before and told after. Nothing
    /// happens when the page is unknown or already selected.
    virtual void selectTabViewItemWithIdentifier(std::string_view identifier) = 0;
    /// Null when there is no page.
    [[nodiscard]] virtual std::shared_ptr<TabViewItem> selectedTabViewItem() const = 0;
};

} // namespace corvane::toolkit
