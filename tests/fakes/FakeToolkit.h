#pragma once

#include "fakes/FakeControls.h"
#include "toolkit/Toolkit.h"

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

/// The chrome around the content is 78 points high, as on the first machine that this was made for.
class FakeWindow final : public toolkit::Window {
public:
    static constexpr double chrome = 78;

    FakeWindow(Journal& journal, std::string name) : journal_(journal), name_(std::move(name)) {}

    void setDelegate(toolkit::WindowDelegate* delegate) override { delegate_ = delegate; }
    void setTitle(std::string_view title) override { title_ = title; }
    [[nodiscard]] std::string title() const override { return title_; }
    void setDocumentEdited(bool edited) override { edited_ = edited; }
    [[nodiscard]] bool isDocumentEdited() const override { return edited_; }
    [[nodiscard]] toolkit::Rect frame() const override { return frame_; }
    [[nodiscard]] toolkit::Rect frameRectForContentRect(const toolkit::Rect& content) const override {
        return {content.origin, {content.size.width, content.size.height + chrome}};
    }
    void setFrame(const toolkit::Rect& frame, bool /*display*/, bool /*animate*/) override { frame_ = frame; }
    void setFrameTopLeftPoint(const toolkit::Point& point) override {
        frame_.origin = {point.x, point.y - frame_.size.height};
        note("setTopLeft");
    }
    void setFrameOrigin(const toolkit::Point& origin) override { frame_.origin = origin; }
    void setContentMinSize(const toolkit::Size& size) override { minimum_ = size; }
    void setContentMaxSize(const toolkit::Size& size) override { maximum_ = size; }
    void setShowsResizeIndicator(bool shows) override { showsResizeIndicator_ = shows; }
    void setZoomButtonEnabled(bool enabled) override { zoomButtonEnabled_ = enabled; }
    void center() override { note("center"); }
    void setFrameAutosaveName(std::string_view name) override { note("autosaveFrame " + std::string(name)); }
    void saveFrameUsingName(std::string_view name) override { note("saveFrame " + std::string(name)); }
    void setToolbar(toolkit::Toolbar& toolbar) override { toolbar_ = &static_cast<FakeToolbar&>(toolbar); }
    void setShowsToolbarButton(bool shows) override {
        note(shows ? "showToolbarButton" : "hideToolbarButton");
    }
    void orderFront() override { visible_ = true; }
    void makeKeyAndOrderFront() override {
        visible_ = true;
        note("makeKeyAndOrderFront");
    }
    void orderOut() override {
        visible_ = false;
        note("orderOut");
    }
    void close() override {
        visible_ = false;
        if (delegate_ != nullptr) delegate_->windowWillClose(*this);
    }
    [[nodiscard]] bool isVisible() const override { return visible_; }
    void makeFirstResponder(toolkit::View* view) override {
        firstResponder_ = view;
        note("makeFirstResponder");
    }
    void beginSheet(toolkit::Window& sheet, std::function<void(toolkit::Window&, int)> ended) override {
        ASSERT_EQ(sheet_, nullptr) << name_ << " has a sheet already";
        sheet_ = &sheet;
        sheetEnded_ = std::move(ended);
        sheet.orderFront();
        note("beginSheet");
    }
    void endSheet(toolkit::Window& sheet, int returnCode) override {
        if (sheet_ != &sheet) return;
        sheet_ = nullptr;
        note("endSheet");
        const auto ended = std::move(sheetEnded_);
        if (ended) ended(sheet, returnCode);
    }
    [[nodiscard]] bool hasAttachedSheet() const override { return sheet_ != nullptr || alertSheets_ > 0; }

    /// The user closes the window; false when it stays.
    [[nodiscard]] bool clickClose() {
        if (delegate_ != nullptr && !delegate_->windowShouldClose(*this)) return false;
        close();
        return true;
    }
    [[nodiscard]] FakeToolbar& toolbar() { return *toolbar_; }
    [[nodiscard]] toolkit::WindowDelegate* delegate() const { return delegate_; }
    [[nodiscard]] toolkit::View* firstResponder() const { return firstResponder_; }
    [[nodiscard]] toolkit::Size contentSize() const {
        return {frame_.size.width, frame_.size.height - chrome};
    }
    [[nodiscard]] toolkit::Size minimum() const { return minimum_; }
    [[nodiscard]] toolkit::Size maximum() const { return maximum_; }
    [[nodiscard]] bool zoomButtonEnabled() const { return zoomButtonEnabled_; }
    [[nodiscard]] bool showsResizeIndicator() const { return showsResizeIndicator_; }
    void alertSheetBegan() { ++alertSheets_; }
    void alertSheetEnded() { --alertSheets_; }

private:
    void note(const std::string& what) const { journal_.add(name_ + "." + what); }

    Journal& journal_;
    std::string name_;
    toolkit::WindowDelegate* delegate_ = nullptr;
    std::string title_;
    bool edited_ = false;
    bool visible_ = false;
    bool showsResizeIndicator_ = true;
    bool zoomButtonEnabled_ = true;
    toolkit::Rect frame_ = {{100, 200}, {500, 443}};
    toolkit::Size minimum_;
    toolkit::Size maximum_;
    FakeToolbar* toolbar_ = nullptr;
    toolkit::View* firstResponder_ = nullptr;
    toolkit::Window* sheet_ = nullptr;
    std::function<void(toolkit::Window&, int)> sheetEnded_;
    int alertSheets_ = 0;
};

/// What was said to the user in one alert.
struct ShownAlert {
    std::string message;
    std::string information;
    std::vector<std::string> buttons;
    bool asSheet = false;
};

class FakeStateCoder final : public toolkit::StateCoder {
public:
    void encodeString(std::string_view key, std::string_view value) override {
        values[std::string(key)] = value;
    }
    [[nodiscard]] std::optional<std::string> decodeString(std::string_view key) const override {
        const auto found = values.find(std::string(key));
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    std::map<std::string, std::string> values;
};

class FakeMenuItem final : public toolkit::MenuItem {
public:
    explicit FakeMenuItem(std::string action, std::string title = "") : action_(action), title_(title) {}
    [[nodiscard]] std::string action() const override { return action_; }
    void setTitle(std::string_view title) override { title_ = title; }
    [[nodiscard]] std::string title() const override { return title_; }

private:
    std::string action_;
    std::string title_;
};

class FakeApplication final : public toolkit::Application {
public:
    explicit FakeApplication(Journal& journal) : journal_(journal) {}
    [[nodiscard]] bool isActive() const override { return active; }
    void terminate() override { journal_.add("application.terminate"); }
    [[nodiscard]] int runModalForWindow(toolkit::Window& /*window*/) override { return 0; }
    void stopModal(int code) override { journal_.add("application.stopModal " + std::to_string(code)); }
    void orderFrontStandardAboutPanel(const std::map<std::string, std::string>& options) override {
        aboutOptions = options;
        journal_.add("application.aboutPanel");
    }
    void openHelpAnchor(std::string_view anchor, std::string_view book) override {
        journal_.add("application.help " + std::string(book) + " " + std::string(anchor));
    }

    bool active = false;
    std::map<std::string, std::string> aboutOptions;

private:
    Journal& journal_;
};

/// Alerts are answered from a list made beforehand (modal ones) or by `answerSheet`.
class FakeToolkit final : public toolkit::Toolkit {
public:
    explicit FakeToolkit(Journal& journal) : application_(journal), journal_(journal) {}

    [[nodiscard]] toolkit::Application& application() override { return application_; }
    [[nodiscard]] std::unique_ptr<toolkit::Alert> makeAlert() override {
        return std::make_unique<FakeAlert>(*this);
    }
    [[nodiscard]] std::shared_ptr<toolkit::TabView> makeTabView(const toolkit::Rect& frame) override {
        madeTabViews.push_back(std::make_shared<FakeTabView>(journal_, "madeTabView"));
        madeTabViews.back()->setFrameForTest(frame);
        return madeTabViews.back();
    }
    [[nodiscard]] std::shared_ptr<toolkit::TabViewItem>
    makeTabViewItem(std::string_view identifier, std::shared_ptr<toolkit::View> view) override {
        return std::make_shared<FakeTabViewItem>(std::string(identifier), std::move(view));
    }
    [[nodiscard]] std::shared_ptr<toolkit::Toolbar> makeToolbar(std::string_view identifier) override {
        return std::make_shared<FakeToolbar>(journal_, std::string(identifier));
    }

    /// The next modal alert gets this answer.
    void willAnswer(int button) { answers_.push_back(button); }
    [[nodiscard]] const std::vector<ShownAlert>& alerts() const { return alerts_; }
    [[nodiscard]] FakeApplication& fakeApplication() { return application_; }
    [[nodiscard]] bool sheetIsOpen() const { return openSheet_ != nullptr; }
    /// The user answers the alert that runs as a sheet.
    void answerSheet(int button) {
        ASSERT_NE(openSheet_, nullptr) << "no alert is open as a sheet";
        openSheet_->answer(button);
    }

    std::vector<std::shared_ptr<FakeTabView>> madeTabViews;

private:
    class FakeAlert final : public toolkit::Alert {
    public:
        explicit FakeAlert(FakeToolkit& toolkit) : toolkit_(toolkit) {}
        ~FakeAlert() override { takeOff(); }
        FakeAlert(const FakeAlert&) = delete;
        FakeAlert& operator=(const FakeAlert&) = delete;

        void setMessageText(std::string_view text) override { shown_.message = text; }
        void setInformativeText(std::string_view text) override { shown_.information = text; }
        void addButton(std::string_view title) override { shown_.buttons.emplace_back(title); }
        [[nodiscard]] int runModal() override {
            toolkit_.alerts_.push_back(shown_);
            toolkit_.journal_.add("alert " + shown_.message);
            if (toolkit_.answers_.empty()) return shown_.buttons.size() == 1 ? 1 : closed;
            const int answer = toolkit_.answers_.front();
            toolkit_.answers_.erase(toolkit_.answers_.begin());
            return answer;
        }
        void beginSheet(toolkit::Window& parent, std::function<void(int)> ended) override {
            shown_.asSheet = true;
            toolkit_.alerts_.push_back(shown_);
            toolkit_.journal_.add("alertSheet " + shown_.message);
            toolkit_.openSheet_ = this;
            parent_ = &static_cast<FakeWindow&>(parent);
            parent_->alertSheetBegan();
            ended_ = std::move(ended);
        }
        void answer(int button) {
            takeOff();
            const auto ended = std::move(ended_);
            if (ended) ended(button); // may destroy this alert
        }

    private:
        void takeOff() {
            if (parent_ == nullptr) return;
            parent_->alertSheetEnded();
            parent_ = nullptr;
            toolkit_.openSheet_ = nullptr;
        }
        FakeToolkit& toolkit_;
        ShownAlert shown_;
        FakeWindow* parent_ = nullptr;
        std::function<void(int)> ended_;
    };

    FakeApplication application_;
    Journal& journal_;
    std::vector<int> answers_;
    std::vector<ShownAlert> alerts_;
    FakeAlert* openSheet_ = nullptr;
};

} // namespace corvane::fakes
