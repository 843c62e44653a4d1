#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "haldend/ldap/LdapSettings.h"
#include "haldend/records/FetchedRecord.h"

namespace corvane::haldend {

/// What an LDAP search is to bring.
struct LdapSearch {
    LdapSearchBase base;
    std::string filter;
    std::vector<std::string> attributes;
    std::size_t maximumResults = 0; ///< 0: unlimited
    bool allowPartial = false;      ///< what arrived before a limit or an end of patience will do
};

/// An authenticated connection to one of a directory's servers. Every step has a time limit from the
/// settings. One thread.
class LdapConnection {
public:
    /// Connects to the first server that answers. Throws `Failure` with what each of them said.
    explicit LdapConnection(const LdapSettings& settings);
    LdapConnection(const LdapConnection&) = delete;
    LdapConnection& operator=(const LdapConnection&) = delete;
    ~LdapConnection();

    /// The base below which the server keeps its entries, by its own word; "" when it doesn't tell.
    [[nodiscard]] std::string defaultBase();
    /// The entries found, attribute name to values, names as in `search.attributes`. Throws `Failure`.
    [[nodiscard]] std::vector<AttributeMap> search(const LdapSearch& search);

private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
    const LdapSettings& settings_;
};

/// Text as it must stand in a search filter: what has a meaning there is written as a backslash and its
/// number.
[[nodiscard]] std::string filterEscaped(std::string_view text);

} // namespace corvane::haldend
