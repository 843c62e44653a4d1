#include "linux/NetworkFiles.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

using namespace corvane;
namespace fs = std::filesystem;

namespace {

struct NetworkFilesOfAMachine : testing::Test {
    NetworkFilesOfAMachine() : root(fs::temp_directory_path() / ("networks-" + std::to_string(::getpid()))) {}
    NetworkFilesOfAMachine(const NetworkFilesOfAMachine&) = delete;
    NetworkFilesOfAMachine& operator=(const NetworkFilesOfAMachine&) = delete;
    ~NetworkFilesOfAMachine() override { fs::remove_all(root); }

    void write(const std::string& path, const std::string& text) const {
        fs::create_directories((root / path).parent_path());
        std::ofstream(root / path) << text;
    }
    const std::string profiles = "etc/NetworkManager/system-connections/";
    fs::path root;
};

} // namespace

TEST_F(NetworkFilesOfAMachine, profiles_areTheSets) {
    write(profiles + "home.nmconnection", "# ours\n[connection]\nid=Home\nuuid=aaaa\n[ipv4]\nid=no\n");
    write(profiles + "office.nmconnection", "[ipv4]\nid=no\n[connection]\nuuid=bbbb\nid=Office\n");
    write("usr/lib/NetworkManager/system-connections/home.nmconnection", "[connection]\nid=Hidden\n");
    const auto preferences = linux_::NetworkFiles(root).create("test");
    EXPECT_EQ(preferences->allSets(),
              (std::vector<platform::NetworkSet>{{"Home", "aaaa"}, {"Office", "bbbb"}}));
    EXPECT_FALSE(preferences->currentSet());
}

TEST_F(NetworkFilesOfAMachine, profileOfARunningDevice_isTheCurrentSet) {
    write(profiles + "home.nmconnection", "[connection]\nid=Home\nuuid=aaaa\n");
    write(profiles + "office.nmconnection", "[connection]\nid=Office\nuuid=bbbb\n");
    write("run/NetworkManager/devices/1", "[device]\nmanaged=unmanaged\n");
    write("run/NetworkManager/devices/2", "[device]\nconnection-uuid=bbbb\n");
    EXPECT_EQ(linux_::NetworkFiles(root).create("test")->currentSet(),
              (platform::NetworkSet{"Office", "bbbb"}));
}

TEST_F(NetworkFilesOfAMachine, machineWithoutNetworkManager_hasNoSets) {
    const auto preferences = linux_::NetworkFiles(root).create("test");
    EXPECT_TRUE(preferences->allSets().empty());
    EXPECT_FALSE(preferences->currentSet());
}

TEST_F(NetworkFilesOfAMachine, hostName_isTheOneOfThisProcess) {
    char name[256] = {};
    ASSERT_EQ(::gethostname(name, sizeof name - 1), 0);
    EXPECT_EQ(linux_::NetworkFiles(root).hostName(), name);
}
