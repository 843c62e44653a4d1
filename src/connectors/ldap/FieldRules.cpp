#include "connectors/ldap/FieldRules.h"

#include "qt/widgets/FieldFormatting.h"

namespace corvane::connectors::ldap {
namespace {

using qt::FieldFormatting;

bool mayBecome(const sdk::Host& host, const sdk::Object& formatter, const FieldFormatting::Edit& edit) {
    return host.table().formatters->isPartialStringValid(formatter.get(), edit.proposed.c_str(),
                                                         edit.original.c_str()) != 0;
}

FieldFormatting::Commit commit(const sdk::Host& host, const sdk::Object& formatter, const std::string& text) {
    CorvaneObject* value = nullptr;
    CorvaneObject* description = nullptr;
    const bool accepted = host.table().formatters->objectValueForString(formatter.get(), text.c_str(), &value,
                                                                        &description) != 0;
    const sdk::Object taken(*host.table().objects, value);
    const sdk::Object reason(*host.table().objects, description);
    return {accepted, text, reason.text()};
}

} // namespace

void setFormatter(QLineEdit& field, const sdk::Host& host, const sdk::Object& formatter) {
    auto* formatting = new FieldFormatting(
        field, {[host, formatter](FieldFormatting::Edit& edit) { return mayBecome(host, formatter, edit); },
                [host, formatter](const std::string& text) { return commit(host, formatter, text); }});
    QObject::connect(&field, &QObject::destroyed, formatting, &QObject::deleteLater);
}

void acceptNumbers(QLineEdit& field, const sdk::Host& host, int least, int most) {
    const auto formatter = host.numberFormatEnforcer();
    const auto& formatters = *host.table().formatters;
    formatters.setMinimum(formatter.get(), std::to_string(least).c_str());
    formatters.setMaximum(formatter.get(), std::to_string(most).c_str());
    setFormatter(field, host, formatter);
}

} // namespace corvane::connectors::ldap
