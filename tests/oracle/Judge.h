#pragma once

#include <map>
#include <string>
#include <vector>

#include "oracle/Files.h"

namespace corvane::oracle {

/// One question to the C library, as in "passwd root": the sources that were asked, and what came of it.
struct Answer {
    std::vector<std::string> asked;
    std::string said;
    friend bool operator==(const Answer&, const Answer&) = default;
};
using Answers = std::map<std::string, Answer>; ///< by their questions

/// What the C library asks and finds, by how its sources behave.
struct NameVerdict {
    Answers all;                ///< every source knows something
    Answers sssEmpty;           ///< sss answers "not found" to everything
    Answers sssDown;            ///< sss answers "unavailable": SSSD doesn't run
    Answers sssEmptyOthersDown; ///< the same two while all others answer "unavailable"
    Answers sssDownOthersDown;
    Answers sssEmptyOthersBusy; ///< and "try again"
    Answers sssDownOthersBusy;
};

struct ServedDomain {
    std::string name;
    std::string provider; ///< "ldap", "ad" ...
    std::string uri;      ///< the first one of an LDAP server, "" when it has none
    friend bool operator==(const ServedDomain&, const ServedDomain&) = default;
};

struct SssdVerdict {
    bool starts = false;
    std::vector<ServedDomain> domains; ///< those with a back end that runs, in SSSD's order
    std::string reason;                ///< SSSD's own last words when it doesn't start
    [[nodiscard]] bool serves(std::string_view domain) const;
};

/// Asks the real readers of a machine's files, each in namespaces of its own. What was judged before with the
/// same content, by any process that shares the folder for verdicts, is not judged again.
class Judge {
public:
    /// `programs` is the folder with the stand-ins and the program that asks the questions. `verdicts` is an
    /// existing folder. `settle` is how many milliseconds SSSD has to have run when its back ends are looked
    /// at: 0 for as soon as it reports itself started.
    Judge(std::string programs, std::string verdicts, int settle = 0);

    /// Both throw `std::runtime_error` when there is no verdict at all.
    [[nodiscard]] NameVerdict names(const Files& machine) const;
    [[nodiscard]] SssdVerdict sssd(const Files& machine) const;

private:
    std::string programs_;
    std::string verdicts_;
    int settle_;
};

/// For people: a line for each question and mode, and the lines about SSSD.
[[nodiscard]] std::string text(const NameVerdict& verdict);
[[nodiscard]] std::string text(const SssdVerdict& verdict);

} // namespace corvane::oracle
