#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "haldend/engine/Rights.h"
#include "haldend/machine/Machine.h"
#include "haldend/policy/ConnectorCatalog.h"
#include "haldend/servers/LdapTestJobs.h"

namespace corvane::haldend {

/// The directory service of one machine, in this process: its settings, its rights and its listeners.
/// Sessions, nodes, authorizations and stores share it. Requests may come from several threads: each holds
/// the engine while it is answered (`Hold`), but not while it waits for a server (`LetGo`). What is set up,
/// listeners and guests, is set up before that, on the main thread.
class Engine {
public:
    /// `root`: "/" or a private machine folder. `codec` and `log` outlive the engine. Opening never fails for
    /// what the folder holds (see `Machine`).
    Engine(const std::string& root, const platform::PropertyListCodec& codec, util::ProcessLog& log);
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    [[nodiscard]] Machine& machine() { return machine_; }
    [[nodiscard]] Rights& rights() { return rights_; }
    [[nodiscard]] ConnectorCatalog& connectorCatalog() { return connectorCatalog_; }
    [[nodiscard]] LdapTestJobs& testJobs() { return testJobs_; }
    [[nodiscard]] const platform::PropertyListCodec& codec() const { return codec_; }
    [[nodiscard]] util::ProcessLog& log() { return log_; }

    /// The engine's settings, as long as this lives, belong to the thread that made it. May be nested.
    class Hold {
    public:
        explicit Hold(Engine& engine) : lock_(engine.mutex_) {}

    private:
        std::lock_guard<std::recursive_mutex> lock_;
    };
    /// Lets others have it for a while. Only in a thread that holds it, once.
    class LetGo {
    public:
        explicit LetGo(Engine& engine) : mutex_(engine.mutex_) { mutex_.unlock(); }
        LetGo(const LetGo&) = delete;
        LetGo& operator=(const LetGo&) = delete;
        ~LetGo() { mutex_.lock(); }

    private:
        std::recursive_mutex& mutex_;
    };

    /// To be called from the run loop every second or so: notices other programs' edits.
    void pollForChanges() {
        const Hold hold(*this);
        machine_.pollForChanges();
    }
    /// Called after each change of the policies, whoever made it, on the thread that made it. For the life of
    /// the engine.
    void addChangeListener(std::function<void()> listener) { listeners_.push_back(std::move(listener)); }
    /// Called again and again while a change keeps its caller waiting, on the caller's thread: what is busy
    /// can be shown. It makes no request.
    void setWaitListener(StillWaiting listener) { machine_.setWaitListener(std::move(listener)); }
    /// Throws `Failure` unless `form` belongs to an authorization that may change the configuration.
    void requireConfigureRight(util::BytesView form) const;

private:
    std::recursive_mutex mutex_;
    const platform::PropertyListCodec& codec_;
    util::ProcessLog& log_;
    Rights rights_;
    ConnectorCatalog connectorCatalog_;
    std::vector<std::function<void()>> listeners_;
    Machine machine_;
    LdapTestJobs testJobs_;
};

} // namespace corvane::haldend
