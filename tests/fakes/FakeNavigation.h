#pragma once

#include "fakes/FakeTableView.h"
#include "toolkit/TabView.h"
#include "toolkit/Toolbar.h"

namespace corvane::fakes {

class FakeTabViewItem final : public toolkit::TabViewItem {
public:
    explicit FakeTabViewItem(std::string identifier, std::shared_ptr<toolkit::View> view = nullptr)
        : identifier_(std::move(identifier)), view_(std::move(view)) {}
    [[nodiscard]] std::string identifier() const override { return identifier_; }
    [[nodiscard]] const std::shared_ptr<toolkit::View>& view() const { return view_; }

private:
    std::string identifier_;
    std::shared_ptr<toolkit::View> view_;
};

class FakeTabView final : public FakeViewOf<toolkit::TabView> {
public:
    using FakeViewOf::FakeViewOf;

    void setDelegate(toolkit::TabViewDelegate* delegate) override { delegate_ = delegate; }
    void setAutoresizingMask(unsigned mask) override { note("autoresizingMask " + std::to_string(mask)); }
    void addTabViewItem(std::shared_ptr<toolkit::TabViewItem> item) override {
        items_.push_back(std::move(item));
        if (!selected_) selected_ = items_.back();
    }
    [[nodiscard]] std::shared_ptr<toolkit::TabViewItem>
    tabViewItemWithIdentifier(std::string_view identifier) override {
        const auto found =
            std::ranges::find_if(items_, [&](const auto& item) { return item->identifier() == identifier; });
        return found == items_.end() ? nullptr : *found;
    }
    void removeTabViewItem(const toolkit::TabViewItem& item) override {
        const auto found =
            std::ranges::find_if(items_, [&](const auto& each) { return each.get() == &item; });
        if (found == items_.end()) return;
        const auto position = found - items_.begin();
        const bool wasSelected = selected_ == *found;
        items_.erase(found);
        if (!wasSelected) return;
        const auto neighbour =
            std::min<std::ptrdiff_t>(position, static_cast<std::ptrdiff_t>(items_.size()) - 1);
        selected_ = items_.empty() ? nullptr : items_[static_cast<std::size_t>(neighbour)];
    }
    void selectTabViewItemWithIdentifier(std::string_view identifier) override {
        const auto item = tabViewItemWithIdentifier(identifier);
        if (!item || item == selected_) return;
        if (delegate_ != nullptr && !delegate_->shouldSelectTabViewItem(*this, *item)) return;
        if (delegate_ != nullptr) delegate_->willSelectTabViewItem(*this, *item);
        selected_ = item;
        note("select " + std::string(identifier));
        if (delegate_ != nullptr) delegate_->didSelectTabViewItem(*this, *item);
    }
    [[nodiscard]] std::shared_ptr<toolkit::TabViewItem> selectedTabViewItem() const override {
        return selected_;
    }

    [[nodiscard]] std::vector<std::string> identifiers() const {
        std::vector<std::string> all;
        for (const auto& item : items_)
            all.push_back(item->identifier());
        return all;
    }
    /// The user clicks a tab.
    void clickTab(const std::string& identifier) { selectTabViewItemWithIdentifier(identifier); }

private:
    toolkit::TabViewDelegate* delegate_ = nullptr;
    std::vector<std::shared_ptr<toolkit::TabViewItem>> items_;
    std::shared_ptr<toolkit::TabViewItem> selected_;
};

class FakeToolbar final : public toolkit::Toolbar {
public:
    FakeToolbar(Journal& journal, std::string identifier)
        : journal_(journal), identifier_(std::move(identifier)) {}

    [[nodiscard]] std::string identifier() const override { return identifier_; }
    void setDelegate(toolkit::ToolbarDelegate* delegate) override { delegate_ = delegate; }
    void setAutosavesConfiguration(bool autosaves) override { autosaves_ = autosaves; }
    void setAllowsUserCustomization(bool allows) override { customizable_ = allows; }
    void setVisible(bool visible) override {
        visible_ = visible;
        if (visible) journal_.add("toolbar.show");
    }
    void setSelectedItemIdentifier(const std::optional<std::string>& identifier) override {
        selected_ = identifier && isSelectable(*identifier) ? identifier : std::nullopt;
    }
    [[nodiscard]] std::optional<std::string> selectedItemIdentifier() const override { return selected_; }
    [[nodiscard]] std::vector<toolkit::ToolbarItem> items() const override {
        std::vector<toolkit::ToolbarItem> items;
        for (const auto& identifier : delegate_->toolbarDefaultItemIdentifiers(*this))
            items.push_back(delegate_->itemForItemIdentifier(*this, identifier, true));
        return items;
    }

    /// The user clicks an item.
    void clickItem(const std::string& identifier) {
        for (const auto& item : items()) {
            if (item.identifier != identifier) continue;
            ASSERT_TRUE(delegate_->validateToolbarItem(item)) << identifier << " can't be clicked";
            if (isSelectable(identifier)) selected_ = identifier;
            return item.action(item);
        }
        FAIL() << "the toolbar has no item " << identifier;
    }
    [[nodiscard]] bool autosaves() const { return autosaves_; }
    [[nodiscard]] bool customizable() const { return customizable_; }
    [[nodiscard]] bool visible() const { return visible_; }

private:
    [[nodiscard]] bool isSelectable(const std::string& identifier) const {
        const auto selectable = delegate_->toolbarSelectableItemIdentifiers(*this);
        return std::ranges::find(selectable, identifier) != selectable.end();
    }

    Journal& journal_;
    std::string identifier_;
    toolkit::ToolbarDelegate* delegate_ = nullptr;
    std::optional<std::string> selected_;
    bool autosaves_ = false;
    bool customizable_ = true;
    bool visible_ = false;
};

} // namespace corvane::fakes
