#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "forms/Form.h"
#include "qt/HandlerGuard.h"

class QPushButton;

namespace corvane::qt {

/// What the widgets of an item need of the window that they are in. Lives as long as the window.
class FormSurface {
public:
    virtual ~FormSurface() = default;
    /// Reports what the user has done, unless the form is closed. The widgets may be gone afterwards.
    virtual void act(const char* gesture, const std::function<void(forms::Form&)>& report) = 0;
    virtual void press(const std::string& buttonName) = 0;
    [[nodiscard]] virtual const forms::Form& form() const = 0;
    [[nodiscard]] virtual HandlerGuard& guard() = 0;
    /// Texts that wrap have come or gone.
    virtual void contentGrew() = 0;
};

/// The widgets of one item. They belong to the window, and the view is destroyed with it. Main thread.
class ItemView {
public:
    ItemView() = default;
    ItemView(const ItemView&) = delete;
    ItemView& operator=(const ItemView&) = delete;
    virtual ~ItemView() = default;

    /// Everything of the item that takes room: what is shown and hidden with it.
    [[nodiscard]] virtual QWidget& row() = 0;
    /// What gets the keyboard; null where nothing does.
    [[nodiscard]] virtual QWidget* field() { return nullptr; }
    /// Shows the item as it is now.
    virtual void show(const forms::Item& item) = 0;
    /// Offers values for the field; does nothing where that makes no sense.
    virtual void suggest(const std::vector<std::string>& /*values*/) {}
};

/// The view of an item of any kind but a group.
[[nodiscard]] std::unique_ptr<ItemView> makeItemView(const forms::Item& item, FormSurface& surface,
                                                     QWidget& parent);

/// A push button as described, which reports to `surface`.
[[nodiscard]] QPushButton* makeFormButton(const forms::Button& button, FormSurface& surface, QWidget& parent);
/// Shows title, help and whether it can be pressed.
void showFormButton(QPushButton& widget, const forms::Button& button, const forms::Form& form);

} // namespace corvane::qt
