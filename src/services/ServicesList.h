#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "plugins/PluginItem.h"

namespace corvane::services {

/// The connectors that the directory service reports, as items in display order, and how others find one.
/// Main thread.
class ServicesList final : public plugins::PluginItems {
public:
    struct Needs {
        virtual ~Needs() = default;
        virtual void hideProgressBar() = 0;
        virtual void reloadPluginTable() = 0;
    };

    /// Where the list is read, and what each item's plug-in gets.
    struct Sources {
        directory::Connection& connection;
        directory::MachineFacts& machine;
        std::shared_ptr<plugins::PluginAPIImplementor> implementor;
    };

    ServicesList(plugins::PluginItem::Context context, Sources sources, Needs& needs);

    /// Reads the list anew; every item and plug-in object is replaced. On an exception of the directory
    /// framework the list keeps what it has by then and does not count as loaded. Does nothing while the list
    /// is being read already: plug-ins are called during the reading, and what they do may lead here.
    void buildDSConfigPaneData();
    [[nodiscard]] const List* items() const override { return items_ ? &*items_ : nullptr; }
    /// 0 before the first build.
    [[nodiscard]] std::size_t count() const { return items_ ? items_->size() : 0; }
    [[nodiscard]] bool isLoaded() const { return loaded_; }
    void invalidate() { loaded_ = false; }
    /// Destroys the plug-in objects in the list's order; the items answer their defaults from here on.
    void destroyPlugins();

    [[nodiscard]] std::shared_ptr<plugins::PluginItem>
    pluginWithPrefix(const std::string& prefix) const override;
    /// The first item with exactly this name; null when there is none.
    [[nodiscard]] std::shared_ptr<plugins::PluginItem> pluginWithName(const std::string& name) const;
    [[nodiscard]] std::optional<std::string> pluginVersionWithPrefix(const std::string& prefix) const;
    /// False when there is no such item. While the list is being read, this and the version are answered for
    /// every connector that the service reports, made into an item or not.
    [[nodiscard]] bool isPluginEnabled(const std::string& prefix) const;
    /// Changes the state and writes it at once; a failure to write isn't reported. Always reloads the table.
    void setPluginEnabled(const std::string& prefix, bool enabled);

private:
    void readList();
    [[nodiscard]] util::Dictionary describe(const halden::Record& record) const;
    void addItem(const util::Dictionary& description);
    [[nodiscard]] const util::Dictionary* reportedWithPrefix(const std::string& prefix) const;
    void sortByName();

    plugins::PluginItem::Context context_;
    Sources sources_;
    Needs& needs_;
    std::optional<List> items_;
    std::optional<std::vector<util::Dictionary>> reported_; ///< descriptions; there while the list is read
    bool loaded_ = false;
};

} // namespace corvane::services
