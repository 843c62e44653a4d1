#include "searchpolicy/NodePaneController.h"

#include <algorithm>
#include <exception>

#include "util/CaseFolding.h"

namespace corvane::searchpolicy {
namespace {

constexpr const char* nodeNameColumn = "NodeName";
constexpr const char* defaultEntry = "DefaultEntry";

/// An error that is made only to carry its reason, and is never raised.
struct DuplicateNodes {
    std::string name;
    std::string reason;
};

DuplicateNodes duplicateError(int count) {
    if (count == 1)
        return {"duplicateNodeAdditionError", "This directory domain is already within your custom path."};
    return {"multipleDuplicateNodeAdditionError",
            "Some of the selected directory domains are already within your custom path."};
}

} // namespace

NodePaneController::NodePaneController(platform::Environment& environment, toolkit::Toolkit& toolkit,
                                       Outlets outlets)
    : environment_(environment), toolkit_(toolkit), outlets_(outlets) {
    outlets_.window.setFrameAutosaveName("AddNodes");
    outlets_.selectNode.setDataSource(this);
    outlets_.selectNode.setAllowsMultipleSelection(true);
    outlets_.selectNode.setDoubleAction([this](toolkit::Control&) { addNodeAction(); });
    outlets_.filter.setSendsActionWhileTyping(true);
    outlets_.filter.setAction([this](toolkit::Control&) { filterRows(); });
    outlets_.addButton.setAction([this](toolkit::Control&) { addNodeAction(); });
    outlets_.doneButton.setAction([this](toolkit::Control&) { doneAction(); });
    outlets_.selectNode.reloadData();
}

void NodePaneController::setParentController(Parent* parent) {
    if (parent != nullptr) parent_ = parent;
}

void NodePaneController::setCustomNodeArray(const util::Array& list) {
    if (!list) return;
    cspNodeArray_ = list;
    setOmittedNodes(list);
}

void NodePaneController::replaceCustomNodeArray(const util::Array& list) {
    forgetCustomNodeArray();
    setCustomNodeArray(list);
    const auto count = list ? static_cast<int>(list.count()) : 0;
    if (cspNodeInsertIndex_ > count) cspNodeInsertIndex_ = appendAtEnd;
}

void NodePaneController::setOmittedNodes(const util::Array& list) {
    const auto names = list.texts();
    omitSet_ = {names.begin(), names.end()};
    omitSet_.insert(legacyLocalNode);
}

void NodePaneController::buildNodePaneData() {
    if (!cspNodeArray_) {
        fullNodeArray_.clear();
        return showRows();
    }
    try {
        const auto session = parent_->haldenSession();
        if (!session) return;
        const auto names = session->nodeNames(nullptr);
        if (!names) return; // they could not be listed
        std::vector<std::string> allowed;
        allowed.reserve(names.count());
        for (const auto& element : names.elements()) {
            auto name = element.as<util::String>().text();
            if (parent_->shouldAllowNodeNameOnSearchPolicy(name)) allowed.push_back(std::move(name));
        }
        fullNodeArray_ = std::move(allowed);
        outlets_.filter.setStringValue("");
        showRows();
    } catch (const std::exception&) {
        return; // what is on screen stays
    }
}

void NodePaneController::showRows() {
    const auto filter = outlets_.filter.stringValue();
    nodeArray_.emplace();
    for (const auto& name : fullNodeArray_)
        if (!omitSet_.contains(name) && util::containsCaseInsensitively(name, filter))
            nodeArray_->push_back(name);
    outlets_.selectNode.deselectAll();
    outlets_.selectNode.reloadData();
    outlets_.selectNode.selectRow(0, false);
}

void NodePaneController::filterRows() {
    if (nodeArray_) showRows();
}

void NodePaneController::addNodeAction() {
    int duplicates = 0;
    if (nodeArray_) {
        for (const int row : outlets_.selectNode.selectedRows()) {
            const auto name = nodeArray_->at(static_cast<std::size_t>(row));
            if (cspNodeArray_ && !insertNode(name)) ++duplicates;
            // Once for each chosen row, duplicates too. The policy's own mark was set by who opened the
            // panel.
            parent_->refreshTable();
            parent_->setPluginModified(true);
        }
    }
    if (duplicates > 0) reportDuplicates(duplicates);
    doneAction();
}

/// False when an equal name is on the list already.
bool NodePaneController::insertNode(const std::string& name) {
    if (cspNodeInsertIndex_ == appendAtEnd) cspNodeInsertIndex_ = static_cast<int>(cspNodeArray_.count());
    if (cspNodeArray_.contains(name)) return false;
    cspNodeArray_.insert(name, static_cast<std::size_t>(cspNodeInsertIndex_));
    ++cspNodeInsertIndex_;
    return true;
}

void NodePaneController::reportDuplicates(int count) {
    const auto problem = duplicateError(count);
    const auto alert = toolkit_.makeAlert();
    alert->setMessageText(environment_.strings.localized("Edit of Custom path"));
    alert->setInformativeText(environment_.strings.localized(problem.reason));
    alert->addButton(environment_.strings.localized("OK"));
    (void)alert->runModal();
}

void NodePaneController::doneAction() { parent_->endSheet(outlets_.window); }

void NodePaneController::windowWillClose() { toolkit_.application().stopModal(0); }

int NodePaneController::numberOfRowsInTableView(const toolkit::TableView& /*table*/) {
    const bool shown = nodeArray_ && outlets_.selectNode.tableColumnWithIdentifier(nodeNameColumn) != nullptr;
    return shown ? static_cast<int>(nodeArray_->size()) : 0;
}

toolkit::ObjectValue NodePaneController::objectValueForTableColumn(const toolkit::TableView& /*table*/,
                                                                   const toolkit::TableColumn& column,
                                                                   int row) {
    const bool there = nodeArray_ && column.identifier() == nodeNameColumn && row >= 0 &&
                       static_cast<std::size_t>(row) < nodeArray_->size();
    return there ? nodeArray_->at(static_cast<std::size_t>(row)) : std::string(defaultEntry);
}

void NodePaneController::setObjectValue(const toolkit::TableView& /*table*/, bool /*value*/,
                                        const toolkit::TableColumn& /*column*/, int /*row*/) {}

} // namespace corvane::searchpolicy
