#include "auth/DirectoryConnection.h"

namespace corvane::auth {

DirectoryConnection::DirectoryConnection(halden::Framework& framework, Needs& needs)
    : framework_(framework), needs_(needs), session_(framework.defaultSession()) {}

void DirectoryConnection::setRemote(bool remote) {
    if (remote == isRemote_) return;
    isRemote_ = remote;
    needs_.setLockControlHidden(remote);
}

std::shared_ptr<halden::Session> DirectoryConnection::haldenSession() {
    if (!session_) session_ = framework_.defaultSession();
    return session_;
}

void DirectoryConnection::setHaldenSession(std::shared_ptr<halden::Session> session) {
    session_ = std::move(session);
    localNode_.reset();
    configNode_.reset();
    needs_.sessionWasReplaced();
}

void DirectoryConnection::renewDefaultSession() { session_ = framework_.defaultSession(); }

std::shared_ptr<halden::Node> DirectoryConnection::localHaldenNode() {
    const auto session = haldenSession();
    if (!localNode_ && session) localNode_ = session->nodeWithType(halden::NodeType::localNodes, nullptr);
    return localNode_;
}

std::shared_ptr<directory::HaldenNodeConfig> DirectoryConnection::haldenConfigNode() {
    if (configNode_) return configNode_;
    const auto session = haldenSession();
    auto node = session ? session->nodeWithType(halden::NodeType::configNode, nullptr) : nullptr;
    if (node) configNode_ = std::make_shared<directory::HaldenNodeConfig>(std::move(node));
    return configNode_;
}

void DirectoryConnection::setRemoteAuth(std::shared_ptr<RemoteAuthorization> authorization) {
    remoteAuth_ = std::move(authorization);
    session_.reset();
}

void DirectoryConnection::setIPAddress(const std::string& address) {
    if (ipAddress_ == address) return;
    setRemote(true);
    needs_.invalidateLoadedPanes();
    ipAddress_ = address;
    needs_.showServerInTitle(address);
}

void DirectoryConnection::disconnect() {
    ipAddress_.reset();
    remoteAuth_.reset();
    session_.reset();
    needs_.setUnlocked(false);
}

} // namespace corvane::auth
