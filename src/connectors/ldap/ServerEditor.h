#pragma once

#include <functional>
#include <memory>

#include "connectors/ldap/ServerList.h"
#include "connectors/ldap/ServerTest.h"
#include "connectors/ldap/TestWindow.h"
#include "sdk/Form.h"

namespace corvane::connectors::ldap {

/// Edits one server. What it holds is handed over when the user accepts it; nothing is changed before. Open
/// from the start. Main thread.
class ServerEditor {
public:
    using Accepted = std::function<void(const Server& server)>;
    /// `index` of the server in the list, `ServerList::none` for a new one; both outlive this.
    ServerEditor(const sdk::Host& host, const ServerList& list, const Server& server, std::size_t index,
                 Accepted accepted);
    ServerEditor(const ServerEditor&) = delete;
    ServerEditor& operator=(const ServerEditor&) = delete;

private:
    [[nodiscard]] sdk::FormWindow described();
    void addServerFields(sdk::FormWindow& window);
    void addSignInFields(sdk::FormWindow& window);
    void addSchemaFields(sdk::FormWindow& window);
    [[nodiscard]] sdk::FormItem moreFields();
    /// As the fields say now.
    [[nodiscard]] Server server() const;
    [[nodiscard]] std::vector<std::string> typedAddresses() const;
    [[nodiscard]] std::string typed(const std::string& item) const;
    void securityChanged() const;
    void schemaChanged() const;
    void bindNameChanged() const;
    /// Puts what pasted URIs say into the fields of their own.
    void takeUrisApart() const;
    /// Complains about the first thing that the form's own checks don't know of.
    [[nodiscard]] bool isInOrder() const;
    void accept();
    void test();
    void askForBases();
    void showBases(const TestReport& report);
    void endOfBases(const std::string& message);
    void showBasesNote(const std::string& message) const;

    const sdk::Host& host_;
    const ServerList& list_;
    Server original_;
    std::size_t index_;
    Accepted accepted_;
    std::unique_ptr<ServerTest> bases_;
    std::unique_ptr<TestWindow> test_;
    sdk::Form form_;
};

} // namespace corvane::connectors::ldap
