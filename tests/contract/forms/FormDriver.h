#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/FormPresenter.h"

namespace corvane::contract {

/// Someone in front of a form, whatever shows it.
class FormDriver {
public:
    virtual ~FormDriver() = default;
    [[nodiscard]] virtual forms::FormPresenter& presenter() = 0;
    /// Whether a form of that name can be seen.
    [[nodiscard]] virtual bool isShown(const std::string& form) = 0;
    virtual void type(const std::string& item, const std::string& text) = 0;
    virtual void check(const std::string& item, bool isChecked) = 0;
    virtual void select(const std::string& list, const std::vector<int>& rows) = 0;
    [[nodiscard]] virtual bool canPress(const std::string& button) = 0;
    virtual void press(const std::string& button) = 0;
    /// Escape, or the window's own way of closing.
    virtual void dismiss() = 0;
    /// What the form says is wrong; "" for nothing.
    [[nodiscard]] virtual std::string problem() = 0;
    /// What a field shows.
    [[nodiscard]] virtual std::string shownText(const std::string& item) = 0;
};

[[nodiscard]] std::unique_ptr<FormDriver> makeFormDriver();

} // namespace corvane::contract
