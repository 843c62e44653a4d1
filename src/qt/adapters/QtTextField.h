#pragma once

#include <QLineEdit>
#include <memory>

#include "qt/HandlerGuard.h"
#include "qt/adapters/QtView.h"
#include "qt/widgets/FieldFormatting.h"
#include "toolkit/Controls.h"

namespace corvane::qt {

class QtTextField final : public QtControl<toolkit::TextField, QLineEdit> {
public:
    QtTextField(QLineEdit& field, HandlerGuard& guard);
    void setSendsActionWhileTyping(bool sends) override { whileTyping_ = sends; }
    void setFormatter(std::shared_ptr<toolkit::Formatter> formatter) override;
    void setStringValue(std::string_view text) override;
    [[nodiscard]] std::string stringValue() const override;
    /// Null without a formatter.
    [[nodiscard]] const FieldFormatting* formatting() const { return formatting_.get(); }

private:
    HandlerGuard& guard_;
    std::unique_ptr<FieldFormatting> formatting_;
    bool whileTyping_ = false;
};

} // namespace corvane::qt
