#include "connectors/ldap/AddressField.h"

#include <QUrl>

namespace corvane::connectors::ldap {
namespace {

constexpr int plainPort = 389;
constexpr int ldapsPort = 636;

} // namespace

std::optional<CommonUris> commonUris(const std::vector<std::string>& texts) {
    std::optional<CommonUris> common;
    for (const auto& each : texts) {
        const QUrl url(QString::fromStdString(each), QUrl::StrictMode);
        const bool isLdaps = url.scheme() == "ldaps";
        if (!url.isValid() || url.host().isEmpty() || (!isLdaps && url.scheme() != "ldap"))
            return std::nullopt;
        const int port = url.port() == (isLdaps ? ldapsPort : plainPort) ? 0 : std::max(0, url.port());
        if (common && (common->isLdaps != isLdaps || common->port != port)) return std::nullopt;
        if (!common) common = CommonUris{{}, isLdaps, port};
        common->hosts.push_back(url.host().toStdString());
    }
    return common;
}

void AddressField::insertFromMimeData(const QMimeData* source) {
    QPlainTextEdit::insertFromMimeData(source);
    if (entered) entered();
}

void AddressField::focusOutEvent(QFocusEvent* event) {
    QPlainTextEdit::focusOutEvent(event);
    if (entered) entered();
}

} // namespace corvane::connectors::ldap
