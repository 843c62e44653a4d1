#pragma once

#include "fakes/FakeNavigation.h"
#include "toolkit/Window.h"

namespace corvane::fakes {

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
    void setFrame(const toolkit::Rect& frame, bool display, bool animate) override {
        frame_ = frame;
        resizings_.emplace_back(display, animate);
    }
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
    /// How each frame was set: with a display, with an animation.
    [[nodiscard]] const std::vector<std::pair<bool, bool>>& resizings() const { return resizings_; }
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
    std::vector<std::pair<bool, bool>> resizings_;
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

} // namespace corvane::fakes
