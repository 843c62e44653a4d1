#include <algorithm>
#include <charconv>
#include <cstdint>

#include "haldend/ldap/LdapClient.h"
#include "haldend/ldap/LdapSchema.h"
#include "haldend/ldap/SidNumbers.h"
#include "haldend/servers/AccountDefaults.h"
#include "haldend/servers/LdapTest.h"
#include "sdk/LdapServerCalls.h"

// The steps of a test that look accounts up. They count only what SSSD would take from this directory: an
// account without usable numbers is none for the machine.

namespace corvane::haldend {

namespace kind = sdk::ldap::failure;

/// A kind of account, and which one of it is to be found.
struct LdapTest::Account {
    std::string what, name; ///< "user" or "group"; "" for any one
    std::string base, className, nameAttribute;
    std::string number, groupNumber; ///< attributes; the latter "" for groups
    std::string sid, primaryGroup;   ///< attributes; the latter "" for groups
    std::string home, shell;         ///< attributes; "" for groups
};

namespace {

/// How many accounts are looked at where any one will do.
constexpr std::size_t sampleSize = 100;
constexpr int wholeTree = 2;

std::optional<std::int64_t> numberIn(const std::string& text) {
    std::int64_t number = 0;
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (status != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

std::string filterFor(const std::string& className, const std::string& attribute, const std::string& name) {
    return "(objectClass=" + filterEscaped(className) + ")(" + attribute + "=" +
           (name.empty() ? "*" : filterEscaped(name)) + ")";
}

std::string present(const std::string& attribute) { return "(" + attribute + "=*)"; }

} // namespace

std::string LdapTest::findUser() {
    return findAccount({"user", plan_.user, baseFor("ldap_user_search_base"), name("ldap_user_object_class"),
                        name("ldap_user_name"), name("ldap_user_uid_number"), name("ldap_user_gid_number"),
                        name("ldap_user_objectsid"), name("ldap_user_primary_group"),
                        name("ldap_user_home_directory"), name("ldap_user_shell")});
}

std::string LdapTest::findGroup() {
    return findAccount({"group", plan_.group, baseFor("ldap_group_search_base"),
                        name("ldap_group_object_class"), name("ldap_group_name"),
                        name("ldap_group_gid_number"), "", name("ldap_group_objectsid"), "", "", ""});
}

std::string LdapTest::findAccount(const Account& wanted) const {
    const bool computes = plan_.server.computesNumbers;
    std::string numbers = computes ? (wanted.sid.empty() ? "" : present(wanted.sid))
                                   : present(wanted.number) + "(!(" + wanted.number + "=0))";
    if (!computes && !wanted.groupNumber.empty()) numbers += present(wanted.groupNumber);
    std::vector<std::string> attributes{wanted.nameAttribute, "groupType"};
    for (const auto* each : {&wanted.number, &wanted.groupNumber, &wanted.sid, &wanted.primaryGroup,
                             &wanted.home, &wanted.shell})
        if (!each->empty()) attributes.push_back(*each);
    const auto filter = "(&" + filterFor(wanted.className, wanted.nameAttribute, wanted.name) + numbers + ")";
    std::optional<std::string> found;
    (void)client_->search({wanted.base, wholeTree, filter, attributes, sampleSize},
                          [&](const LdapEntry& entry) {
                              if (!found) found = described(entry, wanted);
                          });
    if (!found) failToFind(wanted);
    return *found;
}

/// Says whether there is nothing at all, or only what has no number.
void LdapTest::failToFind(const Account& wanted) const {
    const auto filter = "(&" + filterFor(wanted.className, wanted.nameAttribute, wanted.name) + ")";
    std::string found;
    const auto answer = client_->search({wanted.base, wholeTree, filter, {wanted.nameAttribute}, 1},
                                        [&](const LdapEntry& entry) { found = entry.name(); });
    if (found.empty()) requireAllowed(answer, "in this way");
    const auto quoted = "\"" + wanted.name + "\"";
    if (found.empty())
        throw LdapFailure{
            kind::nothingFound,
            wanted.name.empty() ? "No " + wanted.what + " was found."
                                : "There is no " + wanted.what + " " + quoted + ".",
            "Below \"" + wanted.base + "\" nothing matches " + filter +
                (answer.status == 0 ? "." : "; the server says " + answer.text() + "."),
            "Check whether the base DN and the schema are right, and whether the sign-in account "
            "may read users and groups."};
    const auto stored = wanted.number + (wanted.groupNumber.empty() ? "" : " and " + wanted.groupNumber);
    const bool computes = plan_.server.computesNumbers;
    const bool mayCompute = !computes && plan_.server.schema == sdk::ldap::schema::activeDirectory;
    throw LdapFailure{
        kind::noNumbers,
        wanted.name.empty()
            ? "No " + wanted.what + " has a number, so this machine finds none."
            : "The " + wanted.what + " " + quoted + " has no number, so this machine doesn't find it.",
        found + (computes ? ": SSSD computes no number from what " +
                                (wanted.sid.empty() ? "it" : wanted.sid) + " says."
                          : ": " + stored + " missing or not usable."),
        mayCompute
            ? "Choose computed numbers in the server's settings, or have the directory's administrator "
              "store " +
                  stored + " for users and groups."
        : computes ? "Choose the numbers that the directory stores, if it does, or look up another " +
                         wanted.what + "."
                   : "Have the directory's administrator store " + stored + ", or look up another " +
                         wanted.what + "."};
}

std::optional<std::string> LdapTest::described(const LdapEntry& entry, const Account& wanted) const {
    const auto numbers =
        plan_.server.computesNumbers ? computedNumbersOf(entry, wanted) : numbersOf(entry, wanted);
    if (!numbers) return std::nullopt;
    const auto names = entry.values(wanted.nameAttribute);
    const auto named = names.empty() ? std::string("?") : names.front();
    std::string login;
    if (!wanted.home.empty() && !wanted.shell.empty()) {
        const auto home = entry.values(wanted.home), shell = entry.values(wanted.shell);
        login = ", " + homeAndShell(plan_.options, named, home.empty() ? "" : home.front(),
                                    shell.empty() ? "" : shell.front());
    }
    return named + *numbers + login + ": " + entry.name();
}

/// SSSD's own limits, within which both numbers of a user must be.
bool LdapTest::isUsable(const std::string& number) const {
    const auto value = numberIn(number);
    const auto least = numberIn(plan_.options.option("min_id")).value_or(1);
    const auto most = numberIn(plan_.options.option("max_id")).value_or(0);
    return value && *value >= std::max<std::int64_t>(least, 1) && (most <= 0 || *value <= most);
}

std::optional<std::string> LdapTest::numbersOf(const LdapEntry& entry, const Account& wanted) const {
    const auto own = entry.values(wanted.number);
    if (own.empty() || !isUsable(own.front())) return std::nullopt;
    if (wanted.groupNumber.empty()) return ", number " + own.front();
    const auto group = entry.values(wanted.groupNumber);
    if (group.empty() || !isUsable(group.front())) return std::nullopt;
    return ", number " + own.front() + ", group " + group.front();
}

std::optional<std::string> LdapTest::computedNumbersOf(const LdapEntry& entry, const Account& wanted) const {
    constexpr std::int64_t securityGroup = 0x80000000; // SSSD passes over groups for mail alone
    const auto types = entry.values("groupType");
    const auto type = types.empty() ? std::nullopt : numberIn(types.front());
    if (type && wanted.primaryGroup.empty() && (*type & securityGroup) == 0) return std::nullopt;
    const auto sids = entry.values(wanted.sid);
    if (sids.empty()) return std::nullopt;
    if (isTrueOption(plan_.options.option("ldap_idmap_autorid_compat")))
        return ", with a number that SSSD gives out when the account is first looked up";
    SidNumbers numbers(plan_.options);
    const auto own = numbers.numberOf(sids.front());
    if (!own || !isUsable(std::to_string(*own))) return std::nullopt;
    const auto text = ", computed number " + std::to_string(*own);
    if (wanted.primaryGroup.empty()) return text;
    const auto primary = entry.values(wanted.primaryGroup);
    const auto relative = primary.empty() ? std::nullopt : numberIn(primary.front());
    const auto group =
        relative ? numbers.numberOf(sids.front(), static_cast<std::uint32_t>(*relative)) : std::nullopt;
    if (!group) return std::nullopt;
    return text + ", group " + std::to_string(*group);
}

// The schema is the one that is being tested, saved or not.
std::string LdapTest::name(const char* key) const {
    auto tried = plan_.options;
    tried.options["ldap_schema"] = plan_.server.schema;
    return ldapName(tried, key);
}

std::string LdapTest::baseFor(const char* key) const {
    const auto own = baseIn(plan_.options.option(key));
    return own.empty() ? base_ : own;
}

} // namespace corvane::haldend
