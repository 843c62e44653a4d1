#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvane::toolkit {

class Toolbar;

struct ToolbarItem {
    std::string identifier;
    std::string label;
    std::string imageName; ///< "" for none
    std::function<void(const ToolbarItem&)> action;
};

class ToolbarDelegate {
public:
    virtual ~ToolbarDelegate() = default;
    [[nodiscard]] virtual std::vector<std::string> toolbarDefaultItemIdentifiers(const Toolbar& toolbar) = 0;
    [[nodiscard]] virtual std::vector<std::string> toolbarAllowedItemIdentifiers(const Toolbar& toolbar) = 0;
    [[nodiscard]] virtual std::vector<std::string>
    toolbarSelectableItemIdentifiers(const Toolbar& toolbar) = 0;
    [[nodiscard]] virtual ToolbarItem
    itemForItemIdentifier(const Toolbar& toolbar, const std::string& identifier, bool willBeInserted) = 0;
    [[nodiscard]] virtual bool validateToolbarItem(const ToolbarItem& item) = 0;
};

/// A row of buttons of which at most one is marked as selected. A click on a selectable item selects it and
/// runs its action; selecting from the program runs nothing.
class Toolbar {
public:
    virtual ~Toolbar() = default;
    [[nodiscard]] virtual std::string identifier() const = 0;
    virtual void setDelegate(ToolbarDelegate* delegate) = 0;
    virtual void setAutosavesConfiguration(bool autosaves) = 0;
    virtual void setAllowsUserCustomization(bool allows) = 0;
    virtual void setVisible(bool visible) = 0;
    /// None, or an identifier that names no item, leaves nothing selected.
    virtual void setSelectedItemIdentifier(const std::optional<std::string>& identifier) = 0;
    [[nodiscard]] virtual std::optional<std::string> selectedItemIdentifier() const = 0;
    [[nodiscard]] virtual std::vector<ToolbarItem> items() const = 0;
};

} // namespace corvane::toolkit
