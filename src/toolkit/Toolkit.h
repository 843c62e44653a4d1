#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "toolkit/Alert.h"
#include "toolkit/Application.h"
#include "toolkit/TabView.h"
#include "toolkit/Toolbar.h"

namespace corvane::toolkit {

/// Makes what no interface file holds. Results are the caller's, and shared with the window that shows them.
class Toolkit {
public:
    virtual ~Toolkit() = default;
    [[nodiscard]] virtual Application& application() = 0;
    [[nodiscard]] virtual std::unique_ptr<Alert> makeAlert() = 0;
    [[nodiscard]] virtual std::shared_ptr<TabView> makeTabView(const Rect& frame) = 0;
    /// A page that shows `view`, which must be one of this toolkit's.
    [[nodiscard]] virtual std::shared_ptr<TabViewItem> makeTabViewItem(std::string_view identifier,
                                                                       std::shared_ptr<View> view) = 0;
    [[nodiscard]] virtual std::shared_ptr<Toolbar> makeToolbar(std::string_view identifier) = 0;
};

} // namespace corvane::toolkit
