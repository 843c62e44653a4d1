#pragma once

#include <QLineEdit>

#include "sdk/Host.h"

namespace corvane::connectors::ldap {

/// Lets one of the host's formatters judge what is typed into a field, for as long as the field lives. Main
/// thread.
void setFormatter(QLineEdit& field, const sdk::Host& host, const sdk::Object& formatter);

/// A whole number within these bounds, or nothing.
void acceptNumbers(QLineEdit& field, const sdk::Host& host, int least, int most);

} // namespace corvane::connectors::ldap
