#pragma once

#include "qt/HandlerGuard.h"
#include "qt/adapters/QtApplication.h"
#include "toolkit/Toolkit.h"

namespace corvane::qt {

class QtToolkit final : public toolkit::Toolkit {
public:
    QtToolkit(QtApplication& application, HandlerGuard& guard) : application_(application), guard_(guard) {}
    [[nodiscard]] toolkit::Application& application() override { return application_; }
    [[nodiscard]] std::unique_ptr<toolkit::Alert> makeAlert() override;
    [[nodiscard]] std::shared_ptr<toolkit::TabView> makeTabView(const toolkit::Rect& frame) override;
    [[nodiscard]] std::shared_ptr<toolkit::TabViewItem>
    makeTabViewItem(std::string_view identifier, std::shared_ptr<toolkit::View> view) override;
    [[nodiscard]] std::shared_ptr<toolkit::Toolbar> makeToolbar(std::string_view identifier) override;

private:
    QtApplication& application_;
    HandlerGuard& guard_;
};

} // namespace corvane::qt
