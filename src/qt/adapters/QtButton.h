#pragma once

#include <QAbstractButton>

#include "qt/HandlerGuard.h"
#include "qt/adapters/QtView.h"
#include "toolkit/Controls.h"

namespace corvane::qt {

/// A push button or one that shows an icon alone.
class QtButton final : public QtControl<toolkit::Button, QAbstractButton> {
public:
    QtButton(QAbstractButton& button, HandlerGuard& guard);
    /// Shown as it stands: an ampersand is an ampersand.
    void setTitle(std::string_view title) override;
    /// Without the mark of the mnemonic.
    [[nodiscard]] std::string title() const override;
};

} // namespace corvane::qt
