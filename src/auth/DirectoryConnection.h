#pragma once

#include <memory>
#include <optional>
#include <string>

#include "auth/RemoteAuthorization.h"
#include "directory/Connection.h"
#include "directory/NetworkLocations.h"
#include "directory/RootUser.h"

namespace corvane::auth {

/// Which directory service the program talks to: its session, the nodes opened on it, and, for a remote one,
/// the server's address and the rights held there. Main thread.
class DirectoryConnection final : public directory::Connection,
                                  public directory::NetworkLocations::Needs,
                                  public directory::RootUser::Needs {
public:
    struct Needs {
        virtual ~Needs() = default;
        /// The nodes of the old session are gone: nothing is authenticated, the policies read are void.
        virtual void sessionWasReplaced() = 0;
        virtual void setLockControlHidden(bool hidden) = 0;
        /// Another machine: every pane has to be read anew.
        virtual void invalidateLoadedPanes() = 0;
        virtual void showServerInTitle(const std::string& address) = 0;
        virtual void setUnlocked(bool unlocked) = 0;
    };

    /// Takes the framework's default session at once.
    DirectoryConnection(halden::Framework& framework, Needs& needs);
    DirectoryConnection(const DirectoryConnection&) = delete;
    DirectoryConnection& operator=(const DirectoryConnection&) = delete;

    [[nodiscard]] bool isRemote() override { return isRemote_; }
    /// Hides the lock control when remote and shows it when local; nothing happens when nothing changes.
    void setRemote(bool remote);

    /// The current session; the default one is taken when there is none. Null when even that isn't available.
    [[nodiscard]] std::shared_ptr<halden::Session> haldenSession() override;
    /// Drops the nodes of the session before.
    void setHaldenSession(std::shared_ptr<halden::Session> session);
    /// Takes the default session instead of the one held, and keeps the nodes.
    void renewDefaultSession();

    /// Opened on first use; null when that fails.
    [[nodiscard]] std::shared_ptr<halden::Node> localHaldenNode() override;
    [[nodiscard]] std::shared_ptr<directory::HaldenNodeConfig> haldenConfigNode() override;
    /// Null unless `haldenConfigNode` has opened it on this session.
    [[nodiscard]] std::shared_ptr<directory::HaldenNodeConfig> openedConfigNode() override {
        return configNode_;
    }

    [[nodiscard]] std::shared_ptr<RemoteAuthorization> remoteAuth() const { return remoteAuth_; }
    /// Also drops the session: the next `setHaldenSession` brings the remote one.
    void setRemoteAuth(std::shared_ptr<RemoteAuthorization> authorization);
    /// Remote from here on. The same address again changes nothing.
    void setIPAddress(const std::string& address);
    /// "" for this machine.
    [[nodiscard]] std::string ipAddress() override { return ipAddress_.value_or(""); }

    /// Gives up address, remote rights and session, in this order, and locks. The program still counts as
    /// remote; the next `haldenSession` is the default one.
    void disconnect();

private:
    halden::Framework& framework_;
    Needs& needs_;
    std::shared_ptr<halden::Session> session_;
    std::shared_ptr<halden::Node> localNode_;
    std::shared_ptr<directory::HaldenNodeConfig> configNode_;
    std::shared_ptr<RemoteAuthorization> remoteAuth_;
    std::optional<std::string> ipAddress_;
    bool isRemote_ = false;
};

} // namespace corvane::auth
