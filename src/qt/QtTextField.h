#pragma once

#include <QLineEdit>

#include "qt/HandlerGuard.h"
#include "qt/QtView.h"
#include "toolkit/Controls.h"

namespace corvane::qt {

class QtTextField final : public QtControl<toolkit::TextField, QLineEdit> {
public:
    QtTextField(QLineEdit& field, HandlerGuard& guard);
    void setSendsActionWhileTyping(bool sends) override { whileTyping_ = sends; }
    void setStringValue(std::string_view text) override;
    [[nodiscard]] std::string stringValue() const override;

private:
    bool whileTyping_ = false;
};

} // namespace corvane::qt
