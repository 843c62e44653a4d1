#pragma once

#include <QLineEdit>

#include "qt/HandlerGuard.h"
#include "qt/QtView.h"
#include "toolkit/Controls.h"

namespace corvane::qt {

/// One line of text. Its action runs when the user ends the edit with the return key.
class QtTextField final : public QtControl<toolkit::TextField, QLineEdit> {
public:
    QtTextField(QLineEdit& field, HandlerGuard& guard);
    void setStringValue(std::string_view text) override;
    [[nodiscard]] std::string stringValue() const override;
};

} // namespace corvane::qt
