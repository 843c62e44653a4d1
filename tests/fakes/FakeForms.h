#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "forms/Form.h"

namespace corvane::fakes {

/// A form in front of a user who exists only in a test: who can't press what is disabled, nor type into what
/// isn't there.
class FakeFormWindow final : public forms::FormWindow {
public:
    FakeFormWindow(forms::Form& shownForm, std::vector<FakeFormWindow*>& allOpen)
        : form(shownForm), open_(allOpen) {}
    FakeFormWindow(const FakeFormWindow&) = delete;
    FakeFormWindow& operator=(const FakeFormWindow&) = delete;
    ~FakeFormWindow() override { std::erase(open_, this); }

    void open() override { open_.push_back(this); }
    void raise() override { ++raised; }
    void close() override { std::erase(open_, this); }
    void itemChanged(const forms::Item& item) override { changes.push_back(item.name); }
    void buttonsChanged() override { changes.emplace_back("buttons"); }
    void titleChanged() override { changes.emplace_back("title"); }
    void showProblem(const std::string& itemName, const std::string& text) override {
        problemItem = itemName;
        problem = text;
    }
    void suggest(const forms::Item& item, const std::vector<std::string>& values) override {
        suggestedFor = item.name;
        suggestions = values;
    }

    // The user
    void type(const std::string& name, const std::string& text) {
        const auto& item = required(name);
        const auto formatter = form.formatterOf(item);
        ASSERT_TRUE(!formatter || formatter->isPartialStringValid(text, nullptr, nullptr))
            << "\"" << text << "\" can't be typed into " << name;
        form.userTyped(name, text);
    }
    void press(const std::string& name) {
        const auto* button = find(name);
        ASSERT_NE(button, nullptr) << "there is no button " << name;
        ASSERT_TRUE(form.canPress(*button)) << name << " is disabled";
        form.userPressed(name);
    }
    [[nodiscard]] bool canPress(const std::string& name) const { return form.canPress(*find(name)); }
    [[nodiscard]] const forms::Item& required(const std::string& name) const {
        for (const auto& item : form.description().items) {
            if (item.name == name) return item;
            for (const auto& inside : item.items)
                if (inside.name == name) return inside;
        }
        throw std::logic_error("there is no item " + name);
    }

    forms::Form& form;
    std::string problemItem;
    std::string problem;
    std::string suggestedFor;
    std::vector<std::string> suggestions;
    std::vector<std::string> changes;
    int raised = 0;

private:
    [[nodiscard]] const forms::Button* find(const std::string& name) const {
        for (const auto& button : form.description().buttons)
            if (button.name == name) return &button;
        for (const auto& item : form.description().items) {
            if (item.button && item.button->name == name) return &*item.button;
            for (const auto& button : item.buttons)
                if (button.name == name) return &button;
        }
        return nullptr;
    }
    std::vector<FakeFormWindow*>& open_;
};

class FakeFormPresenter final : public forms::FormPresenter {
public:
    [[nodiscard]] std::unique_ptr<forms::FormWindow> present(forms::Form& form) override {
        return std::make_unique<FakeFormWindow>(form, open);
    }
    /// The form in front.
    [[nodiscard]] FakeFormWindow& front() {
        if (open.empty()) throw std::logic_error("no form is open");
        return *open.back();
    }
    std::vector<FakeFormWindow*> open; ///< the one in front last
};

} // namespace corvane::fakes
