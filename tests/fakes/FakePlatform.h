#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>

#include "fakes/FakePropertyListCodec.h"
#include "fakes/Journal.h"
#include "platform/AuthorizationView.h"
#include "platform/Environment.h"

namespace corvane::fakes {

class FakeLog final : public util::ProcessLog {
public:
    void log(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

/// Time stands still; a test makes timers fire.
class FakeRunLoop final : public platform::RunLoop {
public:
    [[nodiscard]] std::unique_ptr<platform::Timer>
    scheduleRepeatingTimer(double seconds, std::function<void()> action) override {
        return std::make_unique<FakeTimer>(*this, seconds, std::move(action));
    }
    /// Intervals of the timers that are running, in seconds.
    [[nodiscard]] std::vector<double> intervals() const {
        std::vector<double> all;
        for (const auto* timer : running_)
            all.push_back(timer->seconds);
        return all;
    }
    void fireAll() {
        const auto timers = running_;
        for (auto* timer : timers)
            if (std::ranges::find(running_, timer) != running_.end()) timer->action();
    }

private:
    struct FakeTimer final : platform::Timer {
        FakeTimer(FakeRunLoop& runLoop, double interval, std::function<void()> what)
            : loop(runLoop), seconds(interval), action(std::move(what)) {
            loop.running_.push_back(this);
        }
        FakeTimer(const FakeTimer&) = delete;
        FakeTimer& operator=(const FakeTimer&) = delete;
        ~FakeTimer() override { invalidate(); }
        void invalidate() override { std::erase(loop.running_, this); }
        FakeRunLoop& loop;
        double seconds;
        std::function<void()> action;
    };
    std::vector<FakeTimer*> running_;
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
    [[nodiscard]] bool launchApplication(const std::string& path) override {
        launched.push_back(path);
        return canLaunch;
    }
    [[nodiscard]] bool openFile(const std::string& file, const std::string& application) override {
        launched.push_back(application + " " + file);
        return canLaunch;
    }
    std::set<std::string> files;
    std::vector<std::string> launched;
    bool canLaunch = true;
};

/// Puts angle quotes around each text, so that a test sees what was looked up and what wasn't.
class FakeStrings final : public platform::LocalizedStrings {
public:
    [[nodiscard]] std::string localized(std::string_view key) const override {
        return marks ? "«" + std::string(key) + "»" : std::string(key);
    }
    bool marks = false;
};

/// Grants rights as the test says.
class FakeAuthorization final : public platform::Authorization {
public:
    FakeAuthorization(Journal& journal, platform::AuthorizationRef ref) : journal_(journal), ref_(ref) {}
    [[nodiscard]] bool obtainRights(const platform::AuthorizationRights& rights,
                                    std::uint32_t flags) override {
        lastRights = rights;
        journal_.add("authorization.obtainRights " + std::to_string(flags));
        if ((flags & platform::AuthorizationFlag::interactionAllowed) != 0 && grantsWhenAsked) held = true;
        return held;
    }
    [[nodiscard]] std::string refusalReason() const override { return "the test says no"; }
    void destroyRights() override { held = false; }
    [[nodiscard]] platform::AuthorizationRef authorizationRef() const override { return ref_; }

    bool held = false;
    bool grantsWhenAsked = true;
    platform::AuthorizationRights lastRights;

private:
    Journal& journal_;
    platform::AuthorizationRef ref_;
};

/// The external form of an authorization is its reference in every octet.
class FakeAuthorizationService final : public platform::AuthorizationService {
public:
    explicit FakeAuthorizationService(Journal& journal) : journal_(journal) {}
    [[nodiscard]] std::shared_ptr<platform::Authorization> createAuthorization() override {
        return std::make_shared<FakeAuthorization>(journal_, nextRef_++);
    }
    [[nodiscard]] std::int32_t makeExternalForm(platform::AuthorizationRef ref,
                                                util::AuthorizationExternalForm& form) override {
        journal_.add("makeExternalForm");
        if (status == 0) form.bytes.fill(static_cast<std::uint8_t>(ref));
        return status;
    }
    std::int32_t status = 0;

private:
    Journal& journal_;
    platform::AuthorizationRef nextRef_ = 7;
};

/// The lock control. Clicking it does what the real one does.
class FakeAuthorizationView final : public platform::AuthorizationView {
public:
    FakeAuthorizationView(Journal& journal, std::shared_ptr<FakeAuthorization> authorization)
        : authorization_(std::move(authorization)), journal_(journal) {}

    void setDelegate(platform::AuthorizationViewDelegate* delegate) override { delegate_ = delegate; }
    void setAuthorizationRights(const platform::AuthorizationRights& rights) override { rights_ = rights; }
    [[nodiscard]] std::shared_ptr<platform::Authorization> authorization() const override {
        return authorization_;
    }
    [[nodiscard]] platform::AuthorizationViewState authorizationState() const override { return state; }
    void updateStatus() override { journal_.add("authorizationView.updateStatus"); }
    void setHidden(bool hidden) override {
        hidden_ = hidden;
        journal_.add(hidden ? "authorizationView.hide" : "authorizationView.show");
    }
    [[nodiscard]] bool isHidden() const override { return hidden_; }

    /// The user clicks the lock. False when nothing came of it.
    bool click() { return state == platform::AuthorizationViewState::unlocked ? lock() : unlock(); }
    [[nodiscard]] const platform::AuthorizationRights& rights() const { return rights_; }
    [[nodiscard]] platform::AuthorizationViewDelegate& delegate() { return *delegate_; }
    [[nodiscard]] FakeAuthorization& fakeAuthorization() { return *authorization_; }

    platform::AuthorizationViewState state = platform::AuthorizationViewState::locked;

private:
    bool unlock() {
        constexpr auto flags = platform::AuthorizationFlag::interactionAllowed |
                               platform::AuthorizationFlag::extendRights |
                               platform::AuthorizationFlag::preAuthorize;
        if (!authorization_->obtainRights(rights_, flags)) return false;
        state = platform::AuthorizationViewState::unlocked;
        delegate_->authorizationViewDidAuthorize(*this);
        return true;
    }
    bool lock() {
        if (!delegate_->authorizationViewShouldDeauthorize(*this)) return false;
        authorization_->destroyRights();
        state = platform::AuthorizationViewState::locked;
        delegate_->authorizationViewDidDeauthorize(*this);
        return true;
    }

    std::shared_ptr<FakeAuthorization> authorization_;
    Journal& journal_;
    platform::AuthorizationViewDelegate* delegate_ = nullptr;
    platform::AuthorizationRights rights_;
    bool hidden_ = false;
};

/// Listeners hear of a change when the test signals it and they watch the key and run in the loop.
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
    void signal(const std::string& key) {
        for (const auto& session : inRunLoop)
            if (session->keys == std::vector<std::string>{key}) session->callback();
    }

    struct Session final : platform::DynamicStoreSession, std::enable_shared_from_this<Session> {
        Session(FakeDynamicStore& owner, std::function<void()> what)
            : store(owner), callback(std::move(what)) {}
        [[nodiscard]] bool setNotificationKeys(const std::vector<std::string>& wanted) override {
            keys = wanted;
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
        if (!symbols.contains(path)) return nullptr;
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
    std::vector<std::string> scanned;
    std::vector<std::string> loaded;

private:
    struct FakeBundle final : platform::Bundle {
        FakeBundle(FakeBundleLoader& owner, std::string where) : loader(owner), path(std::move(where)) {}
        [[nodiscard]] bool load() override {
            loader.loaded.push_back(path);
            return loader.symbols[path] != nullptr;
        }
        [[nodiscard]] void* symbol(const std::string& name) const override {
            return name == "corvane_plugin" ? loader.symbols[path] : nullptr;
        }
        FakeBundleLoader& loader;
        std::string path;
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
    util::NotificationCenter notifications;
    FakeLog log;
    platform::Environment environment{
        runLoop,      userDefaults,  workspace, strings,       authorizationService,
        dynamicStore, propertyLists, bundles,   notifications, log};
};

} // namespace corvane::fakes
