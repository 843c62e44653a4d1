#pragma once

#include <QComboBox>

#include "qt/HandlerGuard.h"
#include "qt/adapters/QtView.h"
#include "toolkit/Controls.h"

namespace corvane::qt {

class QtPopUpButton final : public QtControl<toolkit::PopUpButton, QComboBox> {
public:
    QtPopUpButton(QComboBox& box, HandlerGuard& guard);
    void selectItemAtIndex(int index) override;
    [[nodiscard]] int indexOfSelectedItem() const override;
    [[nodiscard]] int numberOfItems() const override;
    /// The box always shows the chosen item.
    void synchronizeTitleAndSelectedItem() override {}
};

} // namespace corvane::qt
