#include "oracle/Judge.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "oracle/Namespaces.h"
#include "oracle/Reports.h"

namespace corvane::oracle {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

struct Manner {
    const char* name;
    const char* sss;
    const char* others;
    Answers NameVerdict::*answers;
};
const Manner manners[] = {{"all", "knows", "knows", &NameVerdict::all},
                          {"sss-empty", "nothing", "knows", &NameVerdict::sssEmpty},
                          {"sss-down", "unavail", "knows", &NameVerdict::sssDown},
                          {"sss-empty-others-down", "nothing", "unavail", &NameVerdict::sssEmptyOthersDown},
                          {"sss-down-others-down", "unavail", "unavail", &NameVerdict::sssDownOthersDown},
                          {"sss-empty-others-busy", "nothing", "tryagain", &NameVerdict::sssEmptyOthersBusy},
                          {"sss-down-others-busy", "unavail", "tryagain", &NameVerdict::sssDownOthersBusy}};

/// The stand-ins whose names occur in the text. sss is always one of them.
std::vector<std::string> sourcesIn(const std::string& nsswitch, const std::string& folder) {
    std::vector<std::string> names{"sss"};
    for (const auto& entry : fs::directory_iterator(folder)) {
        const auto file = entry.path().filename().string(); // libnss_NAME.so.2
        if (!file.starts_with("libnss_")) continue;
        const auto name = file.substr(7, file.find('.') - 7);
        if (name != "sss" && nsswitch.find(name) != std::string::npos) names.push_back(name);
    }
    return names;
}

/// The output of a program that ended well.
std::string outputOf(const std::vector<std::string>& arguments, const std::vector<std::string>& environment) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    const pid_t child = start(arguments, environment, ends[1], STDERR_FILENO);
    ::close(ends[1]);
    auto text = readAll(ends[0]);
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (status != 0)
        throw std::runtime_error(arguments.front() + " ended with " + std::to_string(status) + ": " + text);
    return text;
}

void write(int descriptor, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const auto length = ::write(descriptor, text.data() + done, text.size() - done);
        if (length < 0) ::_exit(126);
        done += static_cast<std::size_t>(length);
    }
}

} // namespace

Files filesOfNames(const Files& machine) {
    auto files = filesUnder(machine, "etc/");
    std::erase_if(files, [](const auto& entry) { return entry.first.starts_with("etc/sssd/"); });
    return files;
}

std::string nameReport(const Files& files, const std::string& programs) {
    const auto library = programs + "/../lib/oracle-nss";
    auto words = sourcesIn(contentOf(files, "etc/nsswitch.conf"), library);
    words.insert(words.begin(), programs + "/corvane-oracle-questions");
    return runApart(files, 20s, [&](int output) {
        for (const auto& manner : manners) {
            const auto said =
                outputOf(words, {"LD_LIBRARY_PATH=" + library, std::string("ORACLE_SSS=") + manner.sss,
                                 std::string("ORACLE_OTHERS=") + manner.others, "LC_ALL=C"});
            for (const auto& line : parts(said, '\n'))
                write(output, std::string(manner.name) + "\t" + line + "\n");
        }
    });
}

NameVerdict namesFrom(const std::string& report) {
    NameVerdict verdict;
    for (const auto& line : parts(report, '\n')) {
        const auto fields = parts(line, '\t'); // manner, question, asked, said
        if (fields.size() != 4) throw std::runtime_error("no answer to a question: " + line);
        for (const auto& manner : manners)
            if (fields[0] == manner.name)
                (verdict.*manner.answers)[fields[1]] = {parts(fields[2], ' '), fields[3]};
    }
    if (verdict.sssDownOthersBusy.empty()) throw std::runtime_error("the C library wasn't asked: " + report);
    return verdict;
}

} // namespace corvane::oracle
