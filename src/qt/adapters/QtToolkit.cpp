#include "qt/adapters/QtToolkit.h"

#include "qt/adapters/QtAlert.h"
#include "qt/adapters/QtTabView.h"
#include "qt/adapters/QtToolbar.h"
#include "qt/adapters/QtView.h"

namespace corvane::qt {

std::unique_ptr<toolkit::Alert> QtToolkit::makeAlert() { return std::make_unique<QtAlert>(guard_); }

std::shared_ptr<toolkit::TabView> QtToolkit::makeTabView(const toolkit::Rect& frame) {
    auto made = std::make_shared<QtTabView>(guard_);
    made->widget().resize(int(frame.size.width), int(frame.size.height));
    return made;
}

std::shared_ptr<toolkit::TabViewItem> QtToolkit::makeTabViewItem(std::string_view identifier,
                                                                 std::shared_ptr<toolkit::View> view) {
    auto* page = widgetOf(view.get());
    if (!page) return nullptr;
    auto item = std::make_shared<QtTabViewItem>(std::string(identifier),
                                                page->property("tabTitle").toString(), *page);
    item->view = std::move(view);
    return item;
}

std::shared_ptr<toolkit::Toolbar> QtToolkit::makeToolbar(std::string_view identifier) {
    return std::make_shared<QtToolbar>(std::string(identifier), guard_);
}

} // namespace corvane::qt
