#pragma once

#include "haldend/engine/Engine.h"
#include "util/Containers.h"

namespace corvane::haldend {

// The configuration node's calls about the LDAP servers of the machine, as sdk/LdapServerCalls.h describes
// them. Requests come without the authorization, which the node has looked at. Main thread. Each throws
// `Failure`.

[[nodiscard]] util::Bytes listLdapServers(Engine& engine);
util::Bytes writeLdapServers(Engine& engine, util::BytesView request);

/// What a request holds, as a dictionary; its passwords are wiped with this.
class LdapRequestValues {
public:
    LdapRequestValues(util::BytesView request, const platform::PropertyListCodec& codec);
    LdapRequestValues(const LdapRequestValues&) = delete;
    LdapRequestValues& operator=(const LdapRequestValues&) = delete;
    ~LdapRequestValues();
    [[nodiscard]] const util::Dictionary& values() const { return values_; }

private:
    util::Dictionary values_;
};

/// A reply as an XML property list.
[[nodiscard]] util::Bytes replyOf(util::ValueMap values, const platform::PropertyListCodec& codec);

} // namespace corvane::haldend
