#include "searchpolicy/LeavingQuestion.h"

#include <algorithm>

#include "directory/DirectoryAccounts.h"
#include "searchpolicy/NodeName.h"
#include "util/TextFormat.h"

namespace corvane::searchpolicy {

std::string LeavingQuestion::localized(std::string_view key) const {
    return environment_.strings.localized(key);
}

bool LeavingQuestion::agreed() {
    const auto connectors = lookAtConnectors();
    const bool something =
        policy_.hasUnsavedEdits() || !connectors.goOff.empty() || !connectors.removedNodes.empty();
    if (!something) return true;
    policy_.readIfStale();
    const auto directories = leaving(connectors);
    return directories.empty() || ask(directories);
}

LeavingQuestion::Connectors LeavingQuestion::lookAtConnectors() {
    Connectors connectors;
    const auto* items = items_.items();
    if (items == nullptr) return connectors;
    for (const auto& item : *items) {
        if (!item->isActive())
            connectors.off.insert(item->pluginPrefix());
        else if (!item->isEnabledForLocation(nullptr))
            connectors.goOff.insert(item->pluginPrefix());
        for (auto& node : item->nodesToRemove())
            connectors.removedNodes.insert(std::move(node));
    }
    return connectors;
}

std::vector<std::string> LeavingQuestion::leaving(const Connectors& connectors) {
    const auto then = policy_.shownList();
    const auto local = policy_.localOnlyList();
    std::vector<std::string> names;
    for (const auto& node : policy_.listInService().texts()) {
        const auto connector = connectorOfNode(node);
        if (local.contains(node) || connectors.off.contains(connector)) continue;
        const bool stays = then.contains(node) && !connectors.goOff.contains(connector) &&
                           !connectors.removedNodes.contains(node);
        if (!stays) names.push_back(node);
    }
    return names;
}

bool LeavingQuestion::ask(const std::vector<std::string>& leaving) {
    constexpr std::size_t mostLines = 12; // a question must fit on the screen
    std::string text;
    for (std::size_t at = 0; at < std::min(leaving.size(), mostLines); ++at)
        text += leaving[at] + "\n";
    if (leaving.size() > mostLines)
        text +=
            util::formatted(localized("and %@ more"), {std::to_string(leaving.size() - mostLines)}) + "\n";
    text += "\n" +
            localized("Accounts that come from there can no longer log in to this machine. The machine’s own "
                      "accounts (/Local/Accounts) stay.");
    if (const auto who = whoLosesAccess(); !who.empty()) text += "\n\n" + who;
    const auto alert = toolkit_.makeAlert();
    alert->setMessageText(leaving.size() == 1 ? localized("Take this directory off the login policy?")
                                              : localized("Take these directories off the login policy?"));
    alert->setInformativeText(text);
    alert->addButton(localized("Cancel"));
    alert->addButton(localized("Save Anyway"));
    constexpr int goOn = 2;
    return alert->runModal() == goOn;
}

// The directories themselves aren't asked for their members: a server that doesn't answer would keep the user
// waiting.
std::string LeavingQuestion::whoLosesAccess() {
    constexpr std::size_t mostNames = 8;
    const auto session = connection_.haldenSession();
    const auto members =
        session ? directory::membersFromDirectories(*session) : std::vector<directory::DirectoryMember>();
    std::string names;
    for (std::size_t at = 0; at < std::min(members.size(), mostNames); ++at) {
        std::string groups;
        for (const auto& group : members[at].groups)
            groups += (groups.empty() ? "" : ", ") + group;
        names += (at == 0 ? "" : ", ") + members[at].name + " (" + groups + ")";
    }
    if (members.size() > mostNames) names += ", …";
    if (names.empty()) return "";
    return util::formatted(localized("Members of this machine’s groups who have no account of its own: %@."),
                           {names});
}

} // namespace corvane::searchpolicy
