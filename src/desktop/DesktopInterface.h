#pragma once

#include "app/NoConnectionDialog.h"
#include "qt/windows/AddNodesInterface.h"
#include "qt/windows/MainWindowInterface.h"

namespace corvane::desktop {

/// Stands where a record editor would be hosted. The page says by itself that there is none.
class NoDirectoryEditor final : public auth::DirectoryEditor {
public:
    void setHaldenSession(std::shared_ptr<halden::Session> /*session*/) override {}
    void setAuthForLocalNode(std::shared_ptr<platform::Authorization> /*authorization*/) override {}
};

/// Hands the outlets of the Qt window to the program.
class DesktopInterface final : public app::InterfaceLoader {
public:
    DesktopInterface(qt::MainWindowInterface& window, toolkit::Toolkit& toolkit,
                     platform::LocalizedStrings& strings, qt::SettingsFile& settings, qt::HandlerGuard& guard)
        : window_(window), toolkit_(toolkit), strings_(strings), settings_(settings), guard_(guard) {}

    [[nodiscard]] app::MainWindowOutlets loadMainWindow() override;
    [[nodiscard]] searchpolicy::NodePaneController::Outlets loadAddNodes() override;
    [[nodiscard]] std::unique_ptr<auth::ConnectionDialog> loadAuthDialog() override;

private:
    qt::MainWindowInterface& window_;
    toolkit::Toolkit& toolkit_;
    platform::LocalizedStrings& strings_;
    qt::SettingsFile& settings_;
    qt::HandlerGuard& guard_;
    std::unique_ptr<qt::AddNodesInterface> addNodes_;
    NoDirectoryEditor directoryEditor_;
};

} // namespace corvane::desktop
