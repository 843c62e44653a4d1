#include "oracle/Invariants.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <set>

#include "oracle/Reports.h"

namespace corvane::oracle {
namespace {

using Names = std::vector<std::string>;

/// How the sources behave while sss knows nothing, or is down.
struct Weather {
    const char* name;
    Answers NameVerdict::*sssEmpty;
    Answers NameVerdict::*sssDown;
};
const std::array<Weather, 3> weathers{{{"", &NameVerdict::sssEmpty, &NameVerdict::sssDown},
                                       {" while the other sources are unavailable",
                                        &NameVerdict::sssEmptyOthersDown, &NameVerdict::sssDownOthersDown},
                                       {" while the other sources are busy", &NameVerdict::sssEmptyOthersBusy,
                                        &NameVerdict::sssDownOthersBusy}}};

std::string joined(const Names& names) {
    std::string text;
    for (const auto& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text.empty() ? "nobody" : text;
}

/// Only the numbers and members that sss itself gives.
bool isOfSss(const std::string& word) { return word == "7001" || word == "7501" || word == "sss-user"; }

/// The answer without what sss had to do with it.
Answer withoutSss(Answer answer) {
    std::erase(answer.asked, "sss");
    if (answer.said.starts_with("groups ") || answer.said.find(", members ") != std::string::npos) {
        auto words = parts(answer.said, ' ');
        std::erase_if(words, isOfSss);
        answer.said.clear();
        for (const auto& word : words)
            answer.said += word + " ";
    }
    return answer;
}

/// The questions about root, alice and the groups that decide who administers the machine, the weightiest
/// first.
const Names& ourQuestions() {
    static const Names ours{
        "passwd root",       "initgroups root", "group sudo",   "group wheel",  "passwd alice",
        "initgroups alice",  "passwd 0",        "passwd 1000",  "group root",   "group 0",
        "group 27",          "shadow root",     "shadow alice", "gshadow sudo", "netgroup local-crew",
        "innetgr local-crew"};
    return ours;
}

bool isAboutOurs(const std::string& question) {
    return std::ranges::find(ourQuestions(), question) != ourQuestions().end();
}

std::string described(const Answer& answer) {
    return "\"" + answer.said + "\" (asked: " + joined(answer.asked) + ")";
}

/// Nothing but sss could have answered, and it didn't: what comes now can only be better.
bool wasLost(const Answer& before) {
    return before.asked.empty() &&
           (before.said.starts_with("no") || before.said == "groups " || before.said == "alice isn't in");
}

/// What another source knew and was asked for was hidden only because sss, asked after it, knew nothing.
bool wasHiddenBySss(const Answer& before, const Answer& now) {
    return before.said.starts_with("no") && before.asked == now.asked;
}

Answer answerTo(const Answers& answers, const std::string& question) {
    const auto found = answers.find(question);
    return found == answers.end() ? Answer{{}, "the question no longer makes sense"}
                                  : withoutSss(found->second);
}

/// What may come of the question now: what came of it before. Where sss was asked and isn't now, what came
/// when it had nothing to say in either way.
std::vector<Answer> allowed(const State& before, const State& after, const Weather& weather,
                            Answers NameVerdict::*manner, const std::string& question) {
    std::vector<Answer> answers{answerTo(before.names.*manner, question)};
    const auto asks = [&](const State& state) {
        const auto found = (state.names.*weather.sssEmpty).find(question);
        return found != (state.names.*weather.sssEmpty).end() &&
               std::ranges::find(found->second.asked, "sss") != found->second.asked.end();
    };
    if (!asks(before) || asks(after)) return answers;
    answers.push_back(answerTo(before.names.*weather.sssEmpty, question));
    answers.push_back(answerTo(before.names.*weather.sssDown, question));
    return answers;
}

/// What differs, without when it was seen, so that each difference is named once.
class Differences {
public:
    void add(const std::string& question, const std::string& when, const std::string& what) {
        if (!known_.insert(question + what).second) return;
        const auto place = std::ranges::find(ourQuestions(), question) - ourQuestions().begin();
        complaints_.emplace(place, question + when + what);
    }
    /// The weightiest, and how many more there are.
    [[nodiscard]] Complaints complaints() const {
        Complaints some;
        for (const auto& [place, complaint] : complaints_)
            if (some.size() < 5) some.push_back(complaint);
        if (complaints_.size() > some.size())
            some.push_back("and " + std::to_string(complaints_.size() - some.size()) +
                           " more questions like these");
        return some;
    }

private:
    std::set<std::string> known_;
    std::multimap<std::ptrdiff_t, std::string> complaints_;
};

void compare(const State& before, const State& after, const Weather& weather, Answers NameVerdict::*manner,
             const std::string& when, Differences& differences) {
    for (const auto& [question, first] : before.names.*manner) {
        if (question.find(" sss-") != std::string::npos) continue;
        if (!(after.names.*manner).contains(question))
            continue; // about a source that is no longer written anywhere
        const bool sssAnswers = manner == &NameVerdict::all;
        if (sssAnswers && !isAboutOurs(question)) continue;
        auto now = answerTo(after.names.*manner, question);
        const auto then = allowed(before, after, weather, manner, question);
        const auto isSame = [&](const Answer& one) { return sssAnswers ? one.said == now.said : one == now; };
        if (std::ranges::any_of(then, isSame)) continue;
        if (isAboutOurs(question) && wasLost(then.front())) continue;
        if (then.size() > 1 && wasHiddenBySss(then.front(), now)) continue;
        differences.add(question, when, ": was " + described(then.front()) + ", is " + described(now));
    }
}

std::string lowered(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// "host" or "host:port" of "ldap://host:389/"; "" when there is none.
std::string hostOf(const std::string& uri) {
    const auto start = uri.find("://");
    if (start == std::string::npos) return {};
    const auto scheme = lowered(uri.substr(0, start));
    auto host = uri.substr(start + 3);
    host.resize(std::min(host.find_first_of("/? \t"), host.size()));
    const std::string usual = scheme == "ldaps" ? ":636" : ":389";
    if (host.ends_with(usual)) host.resize(host.size() - usual.size());
    return lowered(host);
}

/// The domains that log-ins can meet. SSSD's own view of the machine's files isn't a directory.
std::vector<ServedDomain> directoriesServed(const State& state) {
    if (!asksSss(state.names) || !state.sssd.starts) return {};
    auto domains = state.sssd.domains;
    std::erase_if(domains, [](const auto& domain) { return domain.name == "implicit_files"; });
    return domains;
}

std::string databaseOf(const std::string& line) {
    const auto colon = line.find(':');
    if (colon == std::string::npos) return {};
    auto name = lowered(line.substr(0, colon));
    std::erase_if(name, [](unsigned char c) { return std::isspace(c) != 0; });
    return name;
}

/// The lines of nsswitch.conf that aren't about accounts, comments among them.
Names otherLines(const Files& files) {
    static const std::set<std::string> ours{"passwd", "group", "shadow", "gshadow", "netgroup", "initgroups"};
    Names lines;
    for (const auto& line : parts(contentOf(files, "etc/nsswitch.conf"), '\n'))
        if (!ours.contains(databaseOf(line))) lines.push_back(line);
    return lines;
}

std::string reasonOf(const SssdVerdict& verdict) {
    return verdict.reason.empty() ? "it ended" : verdict.reason;
}

} // namespace

bool asksSss(const NameVerdict& names, const std::string& question) {
    const auto found = names.sssEmpty.find(question);
    return found != names.sssEmpty.end() &&
           std::ranges::find(found->second.asked, "sss") != found->second.asked.end();
}

bool isNodeOf(const std::string& node, const ServedDomain& domain) {
    const auto name = lowered(node), section = lowered(domain.name);
    if (name.ends_with("/" + section)) return true;
    return domain.provider == "ldap" && !hostOf(domain.uri).empty() && name == "/ldap/" + hostOf(domain.uri);
}

Complaints namesAsBefore(const State& before, const State& after) {
    Differences found;
    for (const auto& weather : weathers) {
        compare(before, after, weather, weather.sssEmpty, weather.name, found);
        compare(before, after, weather, weather.sssDown, std::string(", with SSSD down,") + weather.name,
                found);
    }
    compare(before, after, weathers[0], &NameVerdict::all, ", with an SSSD that answers", found);
    return found.complaints();
}

Complaints servedAsShown(const Names& path, const State& after) {
    const auto served = directoriesServed(after);
    const bool isSame = std::ranges::equal(path, served, isNodeOf);
    if (isSame) return {};
    Names names;
    for (const auto& domain : served)
        names.push_back(domain.name + " (" + domain.provider + ")");
    return {"the window shows: " + joined(path) + "; served: " + joined(names) +
            (asksSss(after.names) ? "" : " (sss isn't asked)") +
            (after.sssd.starts ? "" : " (SSSD doesn't start: " + reasonOf(after.sssd) + ")")};
}

Complaints sssWhereItBelongs(const Names& path, const State& before, const State& after) {
    Complaints complaints;
    if (path.empty() && after.sssd.serves("implicit_files")) return {};
    // A file as the administrator left it is the administrator's, as long as what is served is what is shown.
    if (contentOf(before.files, "etc/nsswitch.conf") == contentOf(after.files, "etc/nsswitch.conf"))
        return {};
    for (const auto* question :
         {"passwd nobody-knows-it", "group nobody-knows-it", "initgroups nobody-knows-it"})
        if (asksSss(after.names, question) == path.empty())
            complaints.push_back(std::string(question) +
                                 (path.empty()
                                      ? " asks sss, with no directory on the policy"
                                      : " doesn't ask sss, with " + joined(path) + " on the policy"));
    const bool isTakenOut = asksSss(before.names) && path.empty();
    for (const auto* question : {"shadow nobody-knows-it", "netgroup nobody-knows-it"})
        if (isTakenOut && asksSss(after.names, question))
            complaints.push_back(std::string(question) + " still asks sss");
    return complaints;
}

Complaints sssdStarts(const Names& path, const State& before, const State& after) {
    if (after.sssd.starts || path.empty()) return {};
    if (before.sssd.starts) return {"SSSD started before and doesn't now: " + reasonOf(after.sssd)};
    return {"SSSD doesn't start, with " + joined(path) + " on the policy: " + reasonOf(after.sssd)};
}

Complaints nothingElseChanged(const State& before, const State& after) {
    Complaints complaints;
    auto rest = before.files, restNow = after.files;
    for (const auto* path : {"etc/nsswitch.conf", "etc/sssd/sssd.conf"}) {
        const auto then = rest.find(path), now = restNow.find(path);
        if (then != rest.end() && now != restNow.end() && then->second.mode != now->second.mode)
            complaints.push_back(std::string(path) + " has another mode");
        rest.erase(path);
        restNow.erase(path);
    }
    if (const auto text = difference(rest, restNow); !text.empty())
        complaints.push_back("other files have changed:\n" + text);
    if (otherLines(before.files) != otherLines(after.files))
        complaints.push_back("lines of nsswitch.conf that aren't about accounts have changed");
    return complaints;
}

} // namespace corvane::oracle
