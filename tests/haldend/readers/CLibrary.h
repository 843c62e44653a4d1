#pragma once

#include <map>
#include <string>
#include <vector>

#include "haldend/files/NsswitchLine.h"

namespace corvane::haldend::test {

/// How each stand-in answers all questions.
using SourceAnswers = std::map<std::string, LookupStatus>;

/// The C library of this very process, with stand-ins for the sources a, b, c and sss. One at a time, in a
/// child process: it takes a mount namespace.
class CLibrary {
public:
    /// Throws `std::runtime_error` where the stand-ins or the namespace can't be had. `folder` is for its
    /// file.
    explicit CLibrary(const std::string& folder);

    /// A name that the machine's own files don't know is looked up in passwd, group or initgroups.
    struct Question {
        std::string database;
        SourceAnswers answers;
    };
    struct Answer {
        std::vector<std::string> asked;
        bool isFound = false;
        friend bool operator==(const Answer&, const Answer&) = default;
    };
    /// In a process of its own, with this text in /etc/nsswitch.conf. Fewer answers than questions when the
    /// C library crashes.
    [[nodiscard]] std::vector<Answer> ask(const std::string& nsswitch,
                                          const std::vector<Question>& questions) const;

private:
    std::string path_;
};

} // namespace corvane::haldend::test
