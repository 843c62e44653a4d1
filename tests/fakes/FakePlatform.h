#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>

#include "fakes/FakeAuthorization.h"
#include "fakes/FakePropertyListCodec.h"
#include "fakes/FakeRunLoop.h"
#include "platform/Environment.h"

namespace corvane::fakes {

class FakeLog final : public util::ProcessLog {
public:
    void log(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

class FakeUserDefaults final : public platform::UserDefaults {
public:
    [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const override {
        const auto found = values.find(std::string(key));
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void setString(std::string_view key, std::string_view value) override {
        values[std::string(key)] = value;
    }
    [[nodiscard]] bool boolForKey(std::string_view key) const override { return stringForKey(key) == "true"; }
    void setBool(std::string_view key, bool value) override { setString(key, value ? "true" : "false"); }
    std::map<std::string, std::string> values;
};

class FakeWorkspace final : public platform::Workspace {
public:
    [[nodiscard]] bool fileExists(const std::string& path) const override { return files.contains(path); }
    [[nodiscard]] bool launchApplication(const std::string& path) override { return start({path}); }
    [[nodiscard]] bool openFile(const std::string& file, const std::string& application) override {
        return start({application, file});
    }
    std::set<std::string> files;
    /// Programs that were started, with their arguments.
    std::vector<std::vector<std::string>> started;
    bool canLaunch = true;

private:
    bool start(const std::vector<std::string>& words) {
        const bool can = canLaunch && files.contains(words.front());
        if (can) started.push_back(words);
        return can;
    }
};

/// Puts angle quotes around each text, so that a test sees what was looked up and what wasn't.
class FakeStrings final : public platform::LocalizedStrings {
public:
    [[nodiscard]] std::string localized(std::string_view key) const override {
        return marks ? "«" + std::string(key) + "»" : std::string(key);
    }
    bool marks = false;
};

/// Listeners hear of a change when they watch the key and are in the run loop, and the run loop runs.
class FakeDynamicStore final : public platform::DynamicStore {
public:
    [[nodiscard]] std::shared_ptr<platform::DynamicStoreSession>
    create(const std::string& name, std::function<void()> callback) override {
        if (!canCreate) return nullptr;
        names.push_back(name);
        auto session = std::make_shared<Session>(*this, std::move(callback));
        lastSession = session;
        return session;
    }
    /// Something that the key stands for has changed.
    void change(const std::string& key) {
        for (const auto& session : inRunLoop)
            if (std::ranges::find(session->keys, key) != session->keys.end()) due_.push_back(session);
    }
    void runLoop() {
        const auto due = std::exchange(due_, {});
        for (const auto& session : due)
            session->callback();
    }
    /// A change, and the run loop after it.
    void signal(const std::string& key) {
        change(key);
        runLoop();
    }

    struct Session final : platform::DynamicStoreSession, std::enable_shared_from_this<Session> {
        Session(FakeDynamicStore& owner, std::function<void()> what)
            : store(owner), callback(std::move(what)) {}
        [[nodiscard]] bool setNotificationKeys(const std::vector<std::string>& wanted) override {
            if (store.canWatch) keys = wanted;
            return store.canWatch;
        }
        void addToRunLoop() override { store.inRunLoop.push_back(shared_from_this()); }
        FakeDynamicStore& store;
        std::function<void()> callback;
        std::vector<std::string> keys;
    };
    bool canCreate = true;
    bool canWatch = true;
    std::vector<std::string> names;
    std::weak_ptr<Session> lastSession;
    std::vector<std::shared_ptr<Session>> inRunLoop;

private:
    std::vector<std::shared_ptr<Session>> due_;
};

/// Plug-in folders made of function tables. A bundle without a table can't be loaded.
class FakeBundleLoader final : public platform::BundleLoader {
public:
    using Factory = void* (*)();

    [[nodiscard]] std::vector<std::string> entriesOfFolder(const std::string& folder) override {
        scanned.push_back(folder);
        return folders[folder];
    }
    [[nodiscard]] std::unique_ptr<platform::Bundle> bundleAtPath(const std::string& path) override {
        if (!symbols.contains(path)) {
            logged.push_back("Plug-in " + path + " was not loaded: it isn't there.");
            return nullptr;
        }
        return std::make_unique<FakeBundle>(*this, path);
    }
    [[nodiscard]] std::string builtInPlugInsPath() const override { return "/built-in/PlugIns/"; }

    /// Puts a module into a folder; a null symbol makes it one that can't be loaded.
    void add(const std::string& folder, const std::string& entry, void* symbol) {
        folders[folder].push_back(entry);
        symbols[folder + entry] = symbol;
    }

    std::map<std::string, std::vector<std::string>> folders;
    std::map<std::string, void*> symbols;
    std::map<std::string, std::string> exported; ///< under which name; the factory's where nothing is said
    std::vector<std::string> scanned;
    std::vector<std::string> loaded;
    std::vector<std::string> logged; ///< the loader's own messages

private:
    struct FakeBundle final : platform::Bundle {
        FakeBundle(FakeBundleLoader& owner, std::string where) : loader(owner), path(std::move(where)) {}
        [[nodiscard]] bool load() override {
            loader.loaded.push_back(path);
            isLoaded = loader.symbols[path] != nullptr;
            if (!isLoaded) loader.logged.push_back("Plug-in " + path + " was not loaded: it is none.");
            return isLoaded;
        }
        [[nodiscard]] void* symbol(const std::string& name) const override {
            const auto found = loader.exported.find(path);
            const auto wanted = found == loader.exported.end() ? "corvane_plugin_for_host" : found->second;
            return isLoaded && name == wanted ? loader.symbols[path] : nullptr;
        }
        FakeBundleLoader& loader;
        std::string path;
        bool isLoaded = false;
    };
};

/// Locations as a test sets them; the names of those who have asked are kept.
class FakeNetworkConfiguration final : public platform::NetworkConfiguration {
public:
    [[nodiscard]] std::unique_ptr<platform::NetworkPreferences>
    create(const std::string& clientName) override {
        clients.push_back(clientName);
        return std::make_unique<Preferences>(*this);
    }
    [[nodiscard]] std::string hostName() override { return host; }

    std::vector<platform::NetworkSet> sets;
    std::optional<platform::NetworkSet> current;
    std::string host = "this-machine";
    std::vector<std::string> clients;

private:
    struct Preferences final : platform::NetworkPreferences {
        explicit Preferences(FakeNetworkConfiguration& from) : configuration(from) {}
        [[nodiscard]] std::vector<platform::NetworkSet> allSets() override { return configuration.sets; }
        [[nodiscard]] std::optional<platform::NetworkSet> currentSet() override {
            return configuration.current;
        }
        FakeNetworkConfiguration& configuration;
    };
};

/// A whole machine of fakes.
struct FakePlatform {
    explicit FakePlatform(Journal& journal) : authorizationService(journal) {}
    FakeRunLoop runLoop;
    FakeUserDefaults userDefaults;
    FakeWorkspace workspace;
    FakeStrings strings;
    FakeAuthorizationService authorizationService;
    FakeDynamicStore dynamicStore;
    FakePropertyListCodec propertyLists;
    FakeBundleLoader bundles;
    FakeNetworkConfiguration network;
    util::NotificationCenter notifications;
    FakeLog log;
    platform::Environment environment{runLoop,      userDefaults,  workspace, strings, authorizationService,
                                      dynamicStore, propertyLists, bundles,   network, notifications,
                                      log};
};

} // namespace corvane::fakes
