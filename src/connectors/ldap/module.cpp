// The module's one exported symbol.
#include "connectors/ldap/LdapPlugin.h"
#include "sdk/PluginWrapper.h"

CORVANE_PLUGIN(corvane::connectors::ldap::LdapPlugin)
