#include <gtest/gtest.h>

#include "fakes/FakeProgram.h"

using namespace corvane;

namespace {

constexpr const char* application = "/usr/bin/configurator";
constexpr const char* file = "/etc/connector.conf";

/// A program with one connector that names an external configuration program.
struct ExternalConfiguration : testing::Test {
    void configure(const std::string& applicationPath, const std::string& filePath) {
        auto& record = program.addConnector("Extra", "Active", "1");
        if (!applicationPath.empty()) record.with(halden::attribute::configAvailable, {applicationPath});
        if (!filePath.empty()) record.with(halden::attribute::configFile, {filePath});
        program.platform.strings.marks = true;
        program.launch();
        program.controller().pluginWithName("Extra")->configureButtonClicked(&program.interface.configPlugIn);
    }
    [[nodiscard]] const fakes::ShownAlert& sheet() {
        static const fakes::ShownAlert none;
        return program.toolkit.alerts().empty() ? none : program.toolkit.alerts().back();
    }
    fakes::FakeProgram program;
};

} // namespace

TEST_F(ExternalConfiguration, noneNeeded_saysSoUnderTheConnectorsName) {
    configure("", "");
    EXPECT_EQ(sheet().message, "Extra");
    EXPECT_EQ(sheet().information, "«This plug-in does not require configuration.»");
    EXPECT_EQ(sheet().buttons, std::vector<std::string>{"«OK»"});
    EXPECT_TRUE(sheet().asSheet);
    program.toolkit.answerSheet(1);
    EXPECT_FALSE(program.toolkit.sheetIsOpen());
}

TEST_F(ExternalConfiguration, applicationAlone_isLaunched) {
    program.platform.workspace.files = {application};
    configure(application, "");
    EXPECT_EQ(program.platform.workspace.started, std::vector<std::vector<std::string>>{{application}});
    EXPECT_TRUE(program.toolkit.alerts().empty());
}

TEST_F(ExternalConfiguration, applicationThatDoesntStart_isReported) {
    program.platform.workspace.files = {application};
    program.platform.workspace.canLaunch = false;
    configure(application, "");
    EXPECT_EQ(sheet().message, "«Plug-in Configure Failed»");
    EXPECT_EQ(sheet().information,
              "«Plug-in configuration application /usr/bin/configurator could not be opened.»");
}

TEST_F(ExternalConfiguration, applicationMissing_isReported) {
    configure(application, "");
    EXPECT_EQ(sheet().information, "«Plug-in configuration application: /usr/bin/configurator is missing.»");
}

TEST_F(ExternalConfiguration, fileAndApplication_areOpenedTogether) {
    program.platform.workspace.files = {application, file};
    configure(application, file);
    EXPECT_EQ(program.platform.workspace.started,
              (std::vector<std::vector<std::string>>{{application, file}}));
}

TEST_F(ExternalConfiguration, fileMissing_isReported) {
    program.platform.workspace.files = {application};
    configure(application, file);
    EXPECT_EQ(sheet().information, "«Plug-in configuration file /etc/connector.conf is missing.»");
    EXPECT_TRUE(program.platform.workspace.started.empty());
}

TEST_F(ExternalConfiguration, openingThatFails_namesBoth) {
    program.platform.workspace.files = {application, file};
    program.platform.workspace.canLaunch = false;
    configure(application, file);
    EXPECT_EQ(sheet().information,
              "«Plug-in configuration application /usr/bin/configurator or configuration file "
              "/etc/connector.conf could not be opened.»");
}

TEST_F(ExternalConfiguration, applicationMissingWithAFile_suggestsEditingIt) {
    program.platform.workspace.files = {file};
    configure(application, file);
    EXPECT_EQ(sheet().information,
              "«Plug-in configuration application /usr/bin/configurator is missing. Try editing "
              "the configuration file /etc/connector.conf.»");
}

TEST_F(ExternalConfiguration, remotely_nothingHappens) {
    program.addConnector("Extra", "Active", "1").with(halden::attribute::configAvailable, {application});
    program.platform.workspace.files = {application};
    program.launch();
    const auto item = program.controller().pluginWithName("Extra");
    program.controller().setIPAddress("server.example.com");
    item->configureButtonClicked(&program.interface.configPlugIn);
    EXPECT_TRUE(program.platform.workspace.started.empty());
    EXPECT_TRUE(program.toolkit.alerts().empty());
}
