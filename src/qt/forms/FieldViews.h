#pragma once

#include "qt/forms/ItemView.h"

/// The fields of forms: text, number, password, file; check boxes and choices. Main thread.
namespace corvane::qt {

[[nodiscard]] std::unique_ptr<ItemView> makeLineView(const forms::Item& item, FormSurface& surface,
                                                     QWidget& parent);
/// A text of several lines.
[[nodiscard]] std::unique_ptr<ItemView> makeAreaView(const forms::Item& item, FormSurface& surface,
                                                     QWidget& parent);
[[nodiscard]] std::unique_ptr<ItemView> makeCheckView(const forms::Item& item, FormSurface& surface,
                                                      QWidget& parent);
[[nodiscard]] std::unique_ptr<ItemView> makeChoiceView(const forms::Item& item, FormSurface& surface,
                                                       QWidget& parent);

} // namespace corvane::qt
