#include "desktop/CommandLine.h"

#include <gtest/gtest.h>

using corvane::desktop::CommandLine;

TEST(CommandLine, withoutWords_isThePrivateFolderOnAScreen) {
    const auto line = CommandLine::parse({});
    EXPECT_EQ(line.problem, "");
    EXPECT_EQ(line.machineFolder, "");
    EXPECT_EQ(line.screenshot, "");
    EXPECT_EQ(line.pane, "services");
    EXPECT_FALSE(line.help);
}

TEST(CommandLine, values_followTheOptionOrAnEqualsSign) {
    const auto line = CommandLine::parse({"--machine", "/srv/m", "--screenshot=a.png", "--pane", "search"});
    EXPECT_EQ(line.problem, "");
    EXPECT_EQ(line.machineFolder, "/srv/m");
    EXPECT_EQ(line.screenshot, "a.png");
    EXPECT_EQ(line.pane, "search");
}

TEST(CommandLine, missingValue_isNamed) {
    for (const auto& words : {std::vector<std::string>{"--machine"}, {"--machine="}, {"--machine", "--help"}})
        EXPECT_NE(CommandLine::parse(words).problem.find("requires a value"), std::string::npos)
            << words.front();
}

TEST(CommandLine, unknownOption_isNamed) {
    EXPECT_NE(CommandLine::parse({"--machin", "/srv/m"}).problem.find("\"--machin\""), std::string::npos);
}

TEST(CommandLine, strayWord_isRefused_becauseItWasMeantForSomething) {
    const auto problem = CommandLine::parse({"/srv/m"}).problem;
    EXPECT_NE(problem.find("\"/srv/m\""), std::string::npos) << problem;
    EXPECT_NE(problem.find("--machine"), std::string::npos) << problem;
}

TEST(CommandLine, unknownPane_isRefusedWithTheKnownOnes) {
    const auto problem = CommandLine::parse({"--screenshot", "a.png", "--pane", "users"}).problem;
    EXPECT_NE(problem.find("\"users\""), std::string::npos) << problem;
    EXPECT_NE(problem.find("services, search and editor"), std::string::npos) << problem;
}

TEST(CommandLine, paneWithoutAPicture_isRefused) {
    EXPECT_NE(CommandLine::parse({"--pane", "search"}).problem.find("--screenshot"), std::string::npos);
}

TEST(CommandLine, optionsOfTheWindowSystem_areLeftAloneWithTheirValues) {
    const auto line =
        CommandLine::parse({"-platform", "vnc", "--style", "fusion", "-reverse", "--machine", "/m"});
    EXPECT_EQ(line.problem, "");
    EXPECT_EQ(line.machineFolder, "/m");
}
