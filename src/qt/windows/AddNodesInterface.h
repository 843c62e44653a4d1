#pragma once

#include <memory>

#include "qt/adapters/QtButton.h"
#include "qt/adapters/QtTableView.h"
#include "qt/adapters/QtTextField.h"
#include "qt/adapters/QtWindow.h"

namespace corvane::qt {

/// The interface file "AddNodes", brought to life: the panel of nodes to add, shown as a sheet. Members are
/// owned here and live as long as this.
class AddNodesInterface final {
    struct Form;
    std::unique_ptr<Form> form_;

public:
    AddNodesInterface(SettingsFile& settings, HandlerGuard& guard);
    ~AddNodesInterface();
    AddNodesInterface(const AddNodesInterface&) = delete;
    AddNodesInterface& operator=(const AddNodesInterface&) = delete;

    QtWindow window;
    QtTableView selectNode;
    QtTextField filter;
    QtButton addButton;
    QtButton doneButton;
};

} // namespace corvane::qt
