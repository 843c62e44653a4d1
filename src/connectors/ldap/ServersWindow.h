#pragma once

#include <functional>
#include <memory>

#include "connectors/ldap/ServerEditor.h"
#include "connectors/ldap/ServerList.h"
#include "connectors/ldap/TestWindow.h"
#include "sdk/Form.h"

namespace corvane::connectors::ldap {

/// The list of configured servers, with what can be done to them. Changes are kept in the list until the
/// user applies them in the main window. Open from the start. Main thread.
class ServersWindow {
public:
    /// `host` and `list` outlive this. `isUsed`: the connector's enabled state as the user wishes it.
    /// `closed` is called when the user has closed the window, and may destroy it.
    ServersWindow(const sdk::Host& host, ServerList& list, bool isUsed, std::function<void()> closed);
    ServersWindow(const ServersWindow&) = delete;
    ServersWindow& operator=(const ServersWindow&) = delete;

    [[nodiscard]] bool isOpen() const { return form_.isOpen(); }
    void raise() const { form_.raise(); }
    /// The connector's enabled state as it is wished now.
    [[nodiscard]] bool isUsed() const { return form_.isChecked("useConnector"); }

private:
    [[nodiscard]] sdk::FormWindow described(bool isUsed, std::function<void()> closed);
    [[nodiscard]] sdk::FormItem serverList();
    void reload(std::size_t selected);
    /// Whether the connector is on, with how many servers, and which of them are the same directory.
    void describeState();
    [[nodiscard]] std::string stateText() const;
    [[nodiscard]] std::string duplicatesText() const;
    [[nodiscard]] std::string distinctSummary(const Server& server) const;
    [[nodiscard]] std::vector<std::size_t> selection() const { return form_.selection("servers"); }
    void editServer();
    void duplicateServer();
    void deleteServers();
    void remove(const std::vector<std::size_t>& rows);
    void askBeforeDeleting(const std::vector<std::size_t>& rows, const std::vector<std::string>& onPolicies);
    void testServer();
    /// Opens the editor on a new server, which gets that place in the list when the user wants it.
    void editNew(const Server& server, std::size_t index);
    [[nodiscard]] std::vector<std::string> titlesOnPolicies(const std::vector<std::size_t>& rows) const;

    const sdk::Host& host_;
    ServerList& list_;
    sdk::Form form_;
    sdk::Form question_;
    std::unique_ptr<ServerEditor> editor_;
    std::unique_ptr<TestWindow> test_;
};

} // namespace corvane::connectors::ldap
