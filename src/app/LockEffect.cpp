#include "app/LockEffect.h"

namespace corvane::app {

void LockEffect::lockStateChanged(bool unlocked) {
    outlets_.selectPlugIn.reloadData();
    outlets_.selectNode.reloadData();
    outlets_.selectNodeContact.reloadData();
    if (unlocked)
        unlock();
    else
        lock();
    parts_.notices.update();
}

void LockEffect::lock() {
    outlets_.configPlugIn.setEnabled(false);
    outlets_.addNode.setEnabled(false);
    outlets_.addNodeContact.setEnabled(false);
    outlets_.deleteNode.setEnabled(false);
    outlets_.deleteNodeContact.setEnabled(false);
    outlets_.selectSearchPolicy.setEnabled(false);
    outlets_.selectContactPolicy.setEnabled(false);
    outlets_.selectPlugIn.setAllowsEmptySelection(true);
    outlets_.selectNode.deselectAll();
    outlets_.selectNodeContact.deselectAll();
    outlets_.selectPlugIn.deselectAll();
    outlets_.applyButton.setEnabled(false);
}

void LockEffect::unlock() {
    outlets_.addNode.setEnabled(true);
    outlets_.addNodeContact.setEnabled(true);
    outlets_.selectSearchPolicy.setEnabled(true);
    outlets_.selectContactPolicy.setEnabled(true);
    parts_.servicesTable.updateConfigEnable();
    parts_.authenticationPane.updateDeleteEnable();
    parts_.contactsPane.updateDeleteEnable();
    parts_.modified.updateModifiedState();
    outlets_.selectPlugIn.setAllowsEmptySelection(false);
    if (parts_.window.isServicesPaneShown()) outlets_.window.makeFirstResponder(&outlets_.selectPlugIn);
    outlets_.selectPlugIn.selectRow(0, false);
}

} // namespace corvane::app
