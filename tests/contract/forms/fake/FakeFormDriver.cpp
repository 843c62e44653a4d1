#include "../FormDriver.h"
#include "fakes/FakeForms.h"

namespace corvane::contract {
namespace {

class FakeFormDriver final : public FormDriver {
public:
    [[nodiscard]] forms::FormPresenter& presenter() override { return presenter_; }
    [[nodiscard]] bool isShown(const std::string& form) override {
        for (const auto* window : presenter_.open)
            if (window->form.description().name == form) return true;
        return false;
    }
    void type(const std::string& item, const std::string& text) override { front().type(item, text); }
    void check(const std::string& item, bool isChecked) override {
        front().form.userChecked(item, isChecked);
    }
    void select(const std::string& list, const std::vector<int>& rows) override {
        front().form.userSelected(list, {rows.begin(), rows.end()});
    }
    [[nodiscard]] bool canPress(const std::string& button) override { return front().canPress(button); }
    void press(const std::string& button) override { front().press(button); }
    void dismiss() override { front().form.userDismissed(); }
    [[nodiscard]] std::string problem() override { return front().problem; }
    [[nodiscard]] std::string shownText(const std::string& item) override {
        return front().form.textOf(front().required(item));
    }

private:
    [[nodiscard]] fakes::FakeFormWindow& front() { return presenter_.front(); }
    fakes::FakeFormPresenter presenter_;
};

} // namespace

std::unique_ptr<FormDriver> makeFormDriver() { return std::make_unique<FakeFormDriver>(); }

} // namespace corvane::contract
