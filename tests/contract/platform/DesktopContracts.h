#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Bundle.h"
#include "platform/LocalizedStrings.h"
#include "platform/RunLoop.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

namespace corvane::contract {

/// Defaults in which nothing is stored, and a way to end the program and start it again.
class UserDefaultsUnderTest {
public:
    virtual ~UserDefaultsUnderTest() = default;
    virtual platform::UserDefaults& defaults() = 0;
    virtual void restart() = 0;
};
struct UserDefaultsCase {
    std::string name;
    std::function<std::unique_ptr<UserDefaultsUnderTest>()> make;
};
class UserDefaultsContract : public testing::TestWithParam<UserDefaultsCase> {};

/// A run loop, and a way to let it run for one interval of the timers of a test.
class RunLoopUnderTest {
public:
    static constexpr double interval = 0.02; ///< seconds
    virtual ~RunLoopUnderTest() = default;
    virtual platform::RunLoop& runLoop() = 0;
    virtual void letOneIntervalPass() = 0;
};
struct RunLoopCase {
    std::string name;
    std::function<std::unique_ptr<RunLoopUnderTest>()> make;
};
class RunLoopContract : public testing::TestWithParam<RunLoopCase> {};

/// A desktop with a file and a program that can be started, and what was started: the program and its
/// arguments.
class WorkspaceUnderTest {
public:
    virtual ~WorkspaceUnderTest() = default;
    virtual platform::Workspace& workspace() = 0;
    virtual std::string file() = 0;
    virtual std::string program() = 0;
    virtual std::string missing() = 0;
    virtual std::vector<std::vector<std::string>> started() = 0;
};
struct WorkspaceCase {
    std::string name;
    std::function<std::unique_ptr<WorkspaceUnderTest>()> make;
};
class WorkspaceContract : public testing::TestWithParam<WorkspaceCase> {};

/// Texts in a language that has no translation of anything but, where there is one, of `translated`.
class LocalizedStringsUnderTest {
public:
    virtual ~LocalizedStringsUnderTest() = default;
    virtual platform::LocalizedStrings& strings() = 0;
    /// A key and its translation.
    virtual std::optional<std::pair<std::string, std::string>> translated() { return std::nullopt; }
};
struct LocalizedStringsCase {
    std::string name;
    std::function<std::unique_ptr<LocalizedStringsUnderTest>()> make;
};
class LocalizedStringsContract : public testing::TestWithParam<LocalizedStringsCase> {};

/// A folder (with its trailing slash) of "Good.cvplug", which exports `exported`, "Broken.cvplug", which is
/// no module, and "notes.txt"; and what the loader has logged.
class BundleLoaderUnderTest {
public:
    static constexpr const char* exported = "corvane_plugin_for_host";
    virtual ~BundleLoaderUnderTest() = default;
    virtual platform::BundleLoader& loader() = 0;
    virtual std::string folder() = 0;
    virtual const std::vector<std::string>& logged() = 0;
};
struct BundleLoaderCase {
    std::string name;
    std::function<std::unique_ptr<BundleLoaderUnderTest>()> make;
};
class BundleLoaderContract : public testing::TestWithParam<BundleLoaderCase> {};

} // namespace corvane::contract
