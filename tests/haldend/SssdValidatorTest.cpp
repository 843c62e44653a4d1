#include "haldend/sssd/SssdValidator.h"

#include <unistd.h>

#include "haldend/TestMachine.h"
#include "haldend/storage/Failure.h"

using namespace corvane;
using namespace corvane::haldend;
using namespace corvane::haldend::test;

namespace {

/// A tool that is called like SSSD's and complains about every line with "bad" in it.
const char* const tool = "#!/bin/sh\n[ \"$1 $2 $4\" = \"config-check -c -s\" ] && [ -d \"$5\" ] || exit 9\n"
                         "echo \"Issues identified by validators: 1\"\n"
                         "grep bad \"$3\" | sed 's/^/[rule] not allowed: /'\n! grep -q bad \"$3\"\n";

struct Bench {
    Bench() {
        folder.write("var/lib/corvane/keep", "");
        folder.write("sssctl", tool);
        std::filesystem::permissions(folder.path() + "/sssctl", std::filesystem::perms(0755));
    }
    [[nodiscard]] SssdValidator validator(const std::string& name) {
        return {machine, log, [this] { ++waits; }, folder.path() + "/" + name};
    }

    TemporaryFolder folder;
    RecordedLog log;
    MachineFolder machine{folder.path()};
    int waits = 0;
};

} // namespace

TEST(SssdValidator, newProblem_isRefusedInTheToolsWords) {
    Bench bench;
    auto validator = bench.validator("sssctl");
    if (::geteuid() != 0) { // the tool wants root, so nothing is asked and it is said so
        EXPECT_NO_THROW(validator.check("bad\n", ""));
        EXPECT_EQ(bench.log.lines.size(), 1U);
        return;
    }
    try {
        validator.check("good\nbad_option = 1\n", "good\n");
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_NE(failure.error().reason.find("not allowed: bad_option = 1"), std::string::npos)
            << failure.error().reason;
        EXPECT_NE(failure.error().recovery.find("sssd.conf"), std::string::npos);
    }
    EXPECT_EQ(
        std::distance(std::filesystem::directory_iterator(bench.folder.path() + "/var/lib/corvane"), {}), 1)
        << "the candidate's folder is gone";
}

TEST(SssdValidator, problemThatWasThereBefore_isNotThisChangesDoing) {
    Bench bench;
    EXPECT_NO_THROW(bench.validator("sssctl").check("bad_option = 1\nnew\n", "bad_option = 1\n"));
}

TEST(SssdValidator, callerThatIsKeptWaiting_hearsOfIt) {
    if (::geteuid() != 0) GTEST_SKIP() << "the tool is run as root only";
    Bench bench;
    bench.validator("sssctl").check("good\n", "");
    EXPECT_GT(bench.waits, 0);
}

TEST(SssdValidator, missingTool_isLoggedOnce) {
    Bench bench;
    auto validator = bench.validator("not-there");
    EXPECT_NO_THROW(validator.check("bad\n", ""));
    EXPECT_NO_THROW(validator.check("bad\n", ""));
    ASSERT_EQ(bench.log.lines.size(), 1U);
    EXPECT_NE(bench.log.lines[0].find("not installed"), std::string::npos);
}
