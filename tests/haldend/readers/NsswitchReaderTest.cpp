#include <algorithm>
#include <iostream>
#include <sstream>

#include "haldend/ChangeInAChild.h"
#include "haldend/files/NsswitchFile.h"
#include "haldend/readers/CLibrary.h"
#include "haldend/readers/MadeUpNsswitch.h"
#include "haldend/storage/Failure.h"

// What NsswitchFile says about a file is what the C library does with it: thousands of made-up files are put
// over /etc/nsswitch.conf, in a mount namespace of a child process, and its sources asked.

using namespace corvane;
using namespace corvane::haldend;
using namespace corvane::haldend::test;

namespace {

constexpr unsigned long seed = 20240611;
constexpr int files = 4000;
constexpr int questions = 4; // for each database of a file
constexpr std::size_t shownDifferences = 5;

SourceAnswers madeUpAnswers(Dice& dice) {
    SourceAnswers answers;
    for (const auto* name : {"a", "b", "c", "sss"})
        answers[name] = static_cast<LookupStatus>(dice.below(4));
    return answers;
}

/// Everything else answers as the C library's own sources do for a name that nobody has.
LookupStatus answerOf(const std::string& source, const SourceAnswers& answers) {
    if (const auto found = answers.find(source); found != answers.end()) return found->second;
    return source == "files" ? LookupStatus::notFound : LookupStatus::unavailable;
}

bool isRejected(const std::string& text) {
    try {
        const NsswitchFile read(text, "nsswitch.conf");
        return false;
    } catch (const Failure&) {
        return true;
    }
}

std::optional<NsswitchLine> lineAbout(const std::string& database, const std::string& text) {
    return isRejected(text) ? std::nullopt : NsswitchFile(text, "nsswitch.conf").line(database);
}

CLibrary::Answer predicted(const std::string& text, const CLibrary::Question& question) {
    const auto line = lineAbout(question.database, text);
    if (!line) return {}; // the machine's own files, or nobody at all
    std::vector<LookupStatus> all;
    for (const auto& source : line->sources())
        all.push_back(answerOf(source.name, question.answers));
    const auto search = line->search(all);
    CLibrary::Answer answer{{}, search.isFound};
    for (const auto index : search.asked)
        if (question.answers.contains(line->sources()[index].name))
            answer.asked.push_back(line->sources()[index].name);
    return answer;
}

std::string shown(const CLibrary::Answer& answer) {
    std::string text = answer.isFound ? "found, asked" : "not found, asked";
    for (const auto& name : answer.asked)
        text += " " + name;
    return text;
}

std::string shown(const SourceAnswers& answers) {
    constexpr const char* names[] = {"knows", "notfound", "unavail", "tryagain"};
    std::string text;
    for (const auto& [name, answer] : answers)
        text += " " + name + ":" + names[static_cast<std::size_t>(answer)];
    return text;
}

/// What a run has seen.
struct Tally {
    int files = 0, reached = 0, found = 0, rejected = 0, crashes = 0;
    std::vector<std::string> differences;
};

/// A line without a source has the C library read beyond its list; and a source that isn't installed is
/// passed over, which is another matter than one that is unavailable where a record is passed on.
bool isPredictable(const NsswitchLine& line, const SourceAnswers& known) {
    const auto passesOn = [](const NsswitchSource& source) {
        return source.reactionTo(LookupStatus::success) != LookupAction::stop ||
               source.reactionTo(LookupStatus::unavailable) == LookupAction::merge;
    };
    const auto isMissing = [&](const NsswitchSource& source) {
        return source.name != "files" && !known.contains(source.name);
    };
    const auto& sources = line.sources();
    return !sources.empty() &&
           (std::ranges::none_of(sources, isMissing) || std::ranges::none_of(sources, passesOn));
}

std::vector<CLibrary::Question> madeUpQuestions(Dice& dice, const std::string& text) {
    std::vector<CLibrary::Question> all;
    for (const std::string database : {"passwd", "group", "initgroups"})
        for (int i = 0; i < questions; ++i) {
            const CLibrary::Question question{database, madeUpAnswers(dice)};
            const auto line = lineAbout(database, text);
            // Without a line of their own the groups of a user come from another line, by rules of its own.
            const bool isElsewhere = database == "initgroups" && !line && !isRejected(text);
            if (!isElsewhere && (!line || isPredictable(*line, question.answers))) all.push_back(question);
        }
    return all;
}

void compare(Tally& tally, const CLibrary& library, const std::string& text, Dice& dice) {
    const auto all = madeUpQuestions(dice, text);
    const auto answers = library.ask(text, all);
    ++tally.files;
    tally.rejected += isRejected(text) ? 1 : 0;
    if (answers.size() < all.size()) tally.differences.push_back("the C library crashes\n" + text);
    for (std::size_t i = 0; i < answers.size(); ++i) {
        const auto expected = predicted(text, all[i]);
        tally.reached += answers[i].asked.empty() ? 0 : 1;
        tally.found += answers[i].isFound ? 1 : 0;
        if (answers[i] != expected)
            tally.differences.push_back(all[i].database + shown(all[i].answers) +
                                        "\n  C library: " + shown(answers[i]) +
                                        "\n  predicted: " + shown(expected) + "\n" + text);
    }
}

halden::Error reportOf(const Tally& tally) {
    std::ostringstream report;
    report << tally.files << " files, " << tally.rejected << " of them ignored by the C library; "
           << tally.reached << " questions reached a source, " << tally.found << " found something; "
           << tally.differences.size() << " differences\n";
    for (std::size_t i = 0; i < std::min(shownDifferences, tally.differences.size()); ++i)
        report << tally.differences[i] << "\n";
    halden::Error error;
    error.description = report.str();
    const bool isTelling = tally.reached > tally.files && tally.found > 0 && tally.rejected > 0;
    error.code = isTelling ? static_cast<int>(tally.differences.size()) : -1;
    return error;
}

} // namespace

TEST(NsswitchReader, madeUpFiles_areReadAsTheCLibraryReadsThem) {
    TemporaryFolder folder;
    const auto outcome = inChild([&] {
        const CLibrary library(folder.path());
        Dice dice(seed);
        Tally tally;
        for (int i = 0; i < files; ++i)
            compare(tally, library, madeUpNsswitch(dice), dice);
        return reportOf(tally);
    });
    std::cout << "seed " << seed << ": " << outcome.text << std::endl;
    EXPECT_EQ(outcome.code, 0) << "differences, or -1: hardly a source was asked";
}
