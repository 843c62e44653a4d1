#include <gtest/gtest.h>

#include "fakes/FakeHost.h"
#include "fakes/FakeToolkit.h"
#include "plugins/PluginItem.h"

using namespace corvane;

namespace {

constexpr const char* application = "/usr/bin/configurator";
constexpr const char* file = "/etc/connector.conf";

/// A connector that names an external configuration program.
struct ExternalConfiguration : testing::Test {
    void configure(const std::string& applicationPath, const std::string& filePath) {
        const auto orNone = [](const std::string& path) { return path.empty() ? "Not Available" : path; };
        platform.strings.marks = true;
        item = std::make_unique<plugins::PluginItem>(
            plugins::PluginItem::Context{controller, toolkit, platform.environment},
            util::Dictionary{{"PlugInName", "Extra"},
                             {"PlugInConfigAvail", orNone(applicationPath)},
                             {"PlugInConfigFile", orNone(filePath)}});
        item->setPluginAPIImplementor(host.makeImplementor());
        item->configureButtonClicked(&button);
    }
    [[nodiscard]] const fakes::ShownAlert& sheet() {
        static const fakes::ShownAlert none;
        return toolkit.alerts().empty() ? none : toolkit.alerts().back();
    }
    fakes::Journal journal;
    fakes::FakePlatform platform{journal};
    fakes::FakeToolkit toolkit{journal};
    fakes::FakeWindow window{journal, "window"};
    fakes::FakeButton button{journal, "button", &window};
    fakes::FakeHost host;
    plugins::PluginController controller{platform.environment};
    std::unique_ptr<plugins::PluginItem> item;
};

} // namespace

TEST_F(ExternalConfiguration, noneNeeded_saysSoUnderTheConnectorsName) {
    configure("", "");
    EXPECT_EQ(sheet().message, "Extra");
    EXPECT_EQ(sheet().information, "«This plug-in does not require configuration.»");
    EXPECT_EQ(sheet().buttons, std::vector<std::string>{"«OK»"});
    EXPECT_TRUE(sheet().asSheet);
    toolkit.answerSheet(1);
    EXPECT_FALSE(toolkit.sheetIsOpen());
}

TEST_F(ExternalConfiguration, applicationAlone_isLaunched) {
    platform.workspace.files = {application};
    configure(application, "");
    EXPECT_EQ(platform.workspace.started, std::vector<std::vector<std::string>>{{application}});
    EXPECT_TRUE(toolkit.alerts().empty());
}

TEST_F(ExternalConfiguration, applicationThatDoesntStart_isReported) {
    platform.workspace.files = {application};
    platform.workspace.canLaunch = false;
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
    platform.workspace.files = {application, file};
    configure(application, file);
    EXPECT_EQ(platform.workspace.started, (std::vector<std::vector<std::string>>{{application, file}}));
}

TEST_F(ExternalConfiguration, fileMissing_isReported) {
    platform.workspace.files = {application};
    configure(application, file);
    EXPECT_EQ(sheet().information, "«Plug-in configuration file /etc/connector.conf is missing.»");
    EXPECT_TRUE(platform.workspace.started.empty());
}

TEST_F(ExternalConfiguration, openingThatFails_namesBoth) {
    platform.workspace.files = {application, file};
    platform.workspace.canLaunch = false;
    configure(application, file);
    EXPECT_EQ(sheet().information,
              "«Plug-in configuration application /usr/bin/configurator or configuration file "
              "/etc/connector.conf could not be opened.»");
}

TEST_F(ExternalConfiguration, applicationMissingWithAFile_suggestsEditingIt) {
    platform.workspace.files = {file};
    configure(application, file);
    EXPECT_EQ(sheet().information,
              "«Plug-in configuration application /usr/bin/configurator is missing. Try editing "
              "the configuration file /etc/connector.conf.»");
}

TEST_F(ExternalConfiguration, remotely_nothingHappens) {
    host.remote = true;
    platform.workspace.files = {application};
    configure(application, "");
    EXPECT_TRUE(platform.workspace.started.empty());
    EXPECT_TRUE(toolkit.alerts().empty());
}

TEST_F(ExternalConfiguration, remotely_whatNeedsNoConfigurationSaysSoAllTheSame) {
    host.remote = true;
    configure("", file);
    EXPECT_EQ(sheet().information, "«This plug-in does not require configuration.»");
}
