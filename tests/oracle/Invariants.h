#pragma once

#include <string>
#include <vector>

#include "oracle/Judge.h"

namespace corvane::oracle {

/// What is wrong, a line each; empty when nothing is.
using Complaints = std::vector<std::string>;

/// The machine's readers and its files at one moment.
struct State {
    Files files;
    NameVerdict names;
    SssdVerdict sssd;
};

/// Whether the C library asks sss when it looks for a user (a group, a user's groups).
[[nodiscard]] bool asksSss(const NameVerdict& names, const std::string& question = "passwd nobody-knows-it");

/// True when the window calls the domain so: "/LDAP/HOST" after the host of its first URI, or a node that
/// ends in the domain's name.
[[nodiscard]] bool isNodeOf(const std::string& node, const ServedDomain& domain);

/// Root and alice and their groups are found as before, and every source but sss is asked the same questions
/// with the same outcomes, whether sss knows nothing or is down and however the others behave.
[[nodiscard]] Complaints namesAsBefore(const State& before, const State& after);

/// Exactly the directories of `path`, in its order, answer: sss is asked and SSSD serves them.
[[nodiscard]] Complaints servedAsShown(const std::vector<std::string>& path, const State& after);

/// After a change that was accepted: no lookup of accounts asks sss without a directory to be served, and all
/// of them ask it with one.
[[nodiscard]] Complaints sssWhereItBelongs(const std::vector<std::string>& path, const State& before,
                                           const State& after);

/// SSSD still starts where it did, and wherever directories have been put on the policy.
[[nodiscard]] Complaints sssdStarts(const std::vector<std::string>& path, const State& before,
                                    const State& after);

/// Nothing but etc/nsswitch.conf and etc/sssd/sssd.conf has changed, of the first nothing but the lines about
/// accounts, and both have kept their modes.
[[nodiscard]] Complaints nothingElseChanged(const State& before, const State& after);

} // namespace corvane::oracle
