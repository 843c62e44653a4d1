#pragma once

#include <string>

namespace corvane::oracle {

/// A Kerberos keytab with one made-up key for the host of that name, without which SSSD's back ends for
/// Kerberos domains don't start. Nobody knows the key; no server is ever asked.
[[nodiscard]] std::string keytabFor(const std::string& host, const std::string& realm);

} // namespace corvane::oracle
