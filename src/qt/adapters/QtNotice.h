#pragma once

#include "qt/Text.h"
#include "qt/adapters/QtView.h"
#include "qt/widgets/NoticeStrip.h"
#include "toolkit/Controls.h"

namespace corvane::qt {

class QtNotice final : public QtView<toolkit::Notice, NoticeStrip> {
public:
    using QtView::QtView;
    void setMessageText(std::string_view text) override { widget_.setMessageText(fromUtf8(text)); }
    void setInformativeText(std::string_view text) override { widget_.setInformativeText(fromUtf8(text)); }
};

} // namespace corvane::qt
