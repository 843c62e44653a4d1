#include "searchpolicy/NodePaneSheet.h"

namespace corvane::searchpolicy {

NodePaneController& NodePaneSheet::sharedNodePaneController() {
    if (!controller_)
        controller_ = std::make_unique<NodePaneController>(environment_, toolkit_, parts_.load());
    return *controller_;
}

void NodePaneSheet::open(SearchPolicy& policy, int index) {
    auto& panel = sharedNodePaneController();
    policy_ = &policy;
    panel.setCustomNodeArray(policy.customList());
    panel.setParentController(this);
    panel.setCustomNodeIndex(index);
    panel.buildNodePaneData();
    parts_.window.beginSheet(panel.window(), [this](toolkit::Window& sheet, int) { closed(sheet); });
}

void NodePaneSheet::closed(toolkit::Window& sheet) {
    sheet.orderOut();
    policy_ = nullptr;
    controller_->forgetCustomNodeArray();
}

void NodePaneSheet::customListReplaced(SearchPolicy& policy) {
    if (&policy == policy_) sharedNodePaneController().replaceCustomNodeArray(policy.customList());
}

} // namespace corvane::searchpolicy
