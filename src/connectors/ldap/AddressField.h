#pragma once

#include <QPlainTextEdit>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvane::connectors::ldap {

/// What several LDAP URIs have in common.
struct CommonUris {
    std::vector<std::string> hosts; ///< IPv6 addresses without brackets
    bool isLdaps = false;
    int port = 0; ///< 0 for the standard one
};

/// None unless every text is "ldap://" or "ldaps://" with a host, and perhaps a port and a path, and all of
/// them have scheme and port in common.
[[nodiscard]] std::optional<CommonUris> commonUris(const std::vector<std::string>& texts);

/// A field for addresses, one in each line. Main thread.
class AddressField final : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;
    /// Called when something was pasted, or the keyboard has gone elsewhere: what is there is meant.
    std::function<void()> entered;

protected:
    void insertFromMimeData(const QMimeData* source) override;
    void focusOutEvent(QFocusEvent* event) override;
};

} // namespace corvane::connectors::ldap
