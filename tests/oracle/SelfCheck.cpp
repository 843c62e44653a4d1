#include "oracle/SelfCheck.h"

#include <regex>

#include "oracle/Invariants.h"
#include "oracle/Reports.h"

namespace corvane::oracle {
namespace {

bool hasLine(const std::vector<std::string>& lines, const std::string& pattern) {
    const std::regex wanted(pattern);
    for (const auto& line : lines)
        if (std::regex_search(line, wanted)) return true;
    return false;
}

void expect(bool met, const std::string& what, SelfCheck& check) {
    ++(met ? check.passed : check.failed);
    if (!met) check.text += "FAIL " + what + "\n";
}

State stateOf(const Files& files, const Judge& judge) {
    return {files, judge.names(files), judge.sssd(files)};
}

Complaints complaintsAbout(const Machine& machine, const Judge& judge) {
    auto files = machine.files;
    for (const auto& [path, file] : machine.after)
        files[path] = file;
    const auto before = stateOf(machine.files, judge), after = stateOf(files, judge);
    Complaints all;
    for (const auto& some :
         {namesAsBefore(before, after), nothingElseChanged(before, after), servedAsShown(machine.path, after),
          sssWhereItBelongs(machine.path, before, after), sssdStarts(machine.path, before, after)})
        all.insert(all.end(), some.begin(), some.end());
    return all;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines)
        text += "    " + line + "\n";
    return text;
}

void checkVerdict(const Machine& machine, const Judge& judge, SelfCheck& check) {
    const auto lines = parts(text(judge.names(machine.files)) + text(judge.sssd(machine.files)), '\n');
    for (const auto& pattern : machine.verdict)
        expect(hasLine(lines, pattern), machine.name + ": no line of the verdict is like: " + pattern, check);
    for (const auto& pattern : machine.never)
        expect(!hasLine(lines, pattern), machine.name + ": a line of the verdict is like: " + pattern, check);
}

void checkChange(const Machine& machine, const Judge& judge, SelfCheck& check) {
    const auto complaints = complaintsAbout(machine, judge);
    for (const auto& pattern : machine.complaints)
        expect(hasLine(complaints, pattern),
               machine.name + ": nothing is found wrong that is like: " + pattern + "\n" + joined(complaints),
               check);
    if (machine.complaints.empty())
        expect(complaints.empty(), machine.name + ": this is found wrong:\n" + joined(complaints), check);
}

} // namespace

SelfCheck selfCheck(const std::vector<Machine>& machines, const Judge& judge) {
    SelfCheck check;
    for (const auto& machine : machines) {
        checkVerdict(machine, judge, check);
        if (!machine.after.empty()) checkChange(machine, judge, check);
    }
    return check;
}

} // namespace corvane::oracle
