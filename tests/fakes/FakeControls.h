#pragma once

#include <gtest/gtest.h>

#include "fakes/Journal.h"
#include "toolkit/Controls.h"
#include "util/CharacterSet.h"

namespace corvane::fakes {

/// What every fake view and control shares. `Interface` is the toolkit interface that it stands for.
template <typename Interface>
class FakeViewOf : public Interface {
public:
    FakeViewOf(Journal& journal, std::string name, toolkit::Window* window = nullptr)
        : journal_(journal), name_(std::move(name)), window_(window) {}

    void setHidden(bool hidden) override {
        hidden_ = hidden;
        note(hidden ? "hide" : "show");
    }
    [[nodiscard]] bool isHidden() const override { return hidden_; }
    [[nodiscard]] toolkit::Rect frame() const override { return frame_; }
    [[nodiscard]] toolkit::Window* window() const override { return window_; }

    void setWindow(toolkit::Window* window) { window_ = window; }
    void setFrameForTest(const toolkit::Rect& frame) { frame_ = frame; }
    [[nodiscard]] const std::string& name() const { return name_; }

protected:
    void note(const std::string& what) const { journal_.add(name_ + "." + what); }

private:
    Journal& journal_;
    std::string name_;
    toolkit::Window* window_;
    toolkit::Rect frame_;
    bool hidden_ = false;
};

template <typename Interface>
class FakeControlOf : public FakeViewOf<Interface> {
public:
    using FakeViewOf<Interface>::FakeViewOf;

    void setEnabled(bool enabled) override {
        enabled_ = enabled;
        this->note(enabled ? "enable" : "disable");
    }
    [[nodiscard]] bool isEnabled() const override { return enabled_; }
    void setAction(toolkit::Control::Action action) override { action_ = std::move(action); }

protected:
    /// A gesture of the user. It fails the test where the user couldn't make it.
    void perform() {
        ASSERT_TRUE(enabled_) << this->name() << " is disabled: nobody can operate it";
        ASSERT_FALSE(this->isHidden()) << this->name() << " is hidden: nobody can operate it";
        if (action_) action_(*this);
    }

private:
    bool enabled_ = true;
    toolkit::Control::Action action_;
};

class FakeView final : public FakeViewOf<toolkit::View> {
public:
    using FakeViewOf::FakeViewOf;
};

class FakeButton final : public FakeControlOf<toolkit::Button> {
public:
    using FakeControlOf::FakeControlOf;
    void setTitle(std::string_view title) override { title_ = title; }
    [[nodiscard]] std::string title() const override { return title_; }

    void click() { perform(); }

private:
    std::string title_;
};

class FakePopUpButton final : public FakeControlOf<toolkit::PopUpButton> {
public:
    FakePopUpButton(Journal& journal, std::string name, std::vector<std::string> items)
        : FakeControlOf(journal, std::move(name)), items_(std::move(items)) {}

    void selectItemAtIndex(int index) override {
        if (index >= numberOfItems()) return;
        selected_ = std::max(index, -1);
        note("select " + std::to_string(index));
    }
    [[nodiscard]] int indexOfSelectedItem() const override { return selected_; }
    [[nodiscard]] int numberOfItems() const override { return static_cast<int>(items_.size()); }
    void synchronizeTitleAndSelectedItem() override {
        shownTitle_ = selected_ < 0 ? "" : items_[static_cast<std::size_t>(selected_)];
        note("synchronizeTitle");
    }

    [[nodiscard]] const std::string& shownTitle() const { return shownTitle_; }
    /// The user picks an item.
    void choose(int index) {
        if (isEnabled()) selected_ = index;
        perform();
    }

private:
    std::vector<std::string> items_;
    int selected_ = 0;
    std::string shownTitle_;
};

class FakeTextField final : public FakeControlOf<toolkit::TextField> {
public:
    using FakeControlOf::FakeControlOf;
    void setSendsActionWhileTyping(bool sends) override { note(sends ? "sendsWhileTyping" : "sendsAtEnd"); }
    void setFormatter(std::shared_ptr<toolkit::Formatter> formatter) override {
        formatter_ = std::move(formatter);
    }
    void setStringValue(std::string_view text) override {
        shown_ = value_ = text;
        description_.clear();
    }
    [[nodiscard]] std::string stringValue() const override { return value_; }

    /// The user replaces the text, character by character, and ends the edit with the return key.
    void type(const std::string& text) {
        enter(text);
        if (commit()) perform();
    }
    /// The same, but the keyboard goes elsewhere instead.
    void typeAndLeave(const std::string& text) {
        enter(text);
        (void)commit();
    }
    [[nodiscard]] const std::string& shownText() const { return shown_; }
    /// Why the text is refused, as it stands beside the field; "" when it isn't.
    [[nodiscard]] const std::string& shownDescription() const { return description_; }

private:
    void enter(std::string_view text) {
        if (!formatter_) return void(shown_ = text);
        std::string typed;
        while (!text.empty()) {
            auto rest = text;
            (void)util::takeCharacter(rest);
            auto proposed = typed + std::string(text.substr(0, text.size() - rest.size()));
            text = rest;
            toolkit::TextRange selection;
            // The first key that is taken replaces the old text.
            if (formatter_->isPartialEditValid(proposed, selection, shown_, {}, nullptr))
                shown_ = typed = proposed;
        }
    }
    bool commit() {
        util::Value value;
        std::string description;
        const bool good = !formatter_ || formatter_->getObjectValueForString(&value, shown_, &description);
        description_ = description;
        if (good && formatter_) shown_ = formatter_->stringForObjectValue(value).value_or(shown_);
        if (good) value_ = shown_;
        return good;
    }

    std::shared_ptr<toolkit::Formatter> formatter_;
    std::string shown_;
    std::string value_;
    std::string description_;
};

class FakeLabel final : public FakeViewOf<toolkit::Label> {
public:
    using FakeViewOf::FakeViewOf;
    void setText(std::string_view text) override { text_ = text; }
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    std::string text_;
};

class FakeNotice final : public FakeViewOf<toolkit::Notice> {
public:
    using FakeViewOf::FakeViewOf;
    void setMessageText(std::string_view text) override { message_ = text; }
    void setInformativeText(std::string_view text) override { information_ = text; }
    /// What is to be read; "" while it is hidden.
    [[nodiscard]] std::string shownMessage() const { return isHidden() ? "" : message_; }
    [[nodiscard]] std::string shownInformation() const { return isHidden() ? "" : information_; }

private:
    std::string message_;
    std::string information_;
};

class FakeBusyIndicator final : public toolkit::BusyIndicator {
public:
    explicit FakeBusyIndicator(Journal& journal) : journal_(journal) {}
    void begin(std::string_view text) override {
        EXPECT_EQ(text_, "") << "busy twice";
        text_ = text;
        journal_.add("busy: " + text_);
    }
    void end() override {
        text_.clear();
        journal_.add("busy no longer");
    }
    /// "" while the program isn't busy.
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    Journal& journal_;
    std::string text_;
};

class FakeProgressIndicator final : public FakeViewOf<toolkit::ProgressIndicator> {
public:
    using FakeViewOf::FakeViewOf;
    void setIndeterminate(bool indeterminate) override {
        indeterminate_ = indeterminate;
        note(indeterminate ? "indeterminate" : "determinate");
    }
    [[nodiscard]] bool isIndeterminate() const override { return indeterminate_; }
    void setUsesThreadedAnimation(bool uses) override { note(uses ? "threaded" : "unthreaded"); }
    void startAnimation() override { note("start"); }
    void stopAnimation() override { note("stop"); }
    void setNeedsDisplay() override { note("needsDisplay"); }
    void display() override { note("display"); }

private:
    bool indeterminate_ = false;
};

} // namespace corvane::fakes
