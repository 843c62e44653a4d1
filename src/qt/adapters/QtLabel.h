#pragma once

#include <QLabel>

#include "qt/Text.h"
#include "qt/adapters/QtView.h"
#include "toolkit/Controls.h"

namespace corvane::qt {

class QtLabel final : public QtView<toolkit::Label, QLabel> {
public:
    using QtView::QtView;
    void setText(std::string_view text) override { widget_.setText(fromUtf8(text)); }
};

} // namespace corvane::qt
