#pragma once

#include <QWidget>
#include <memory>

#include "platform/Authorization.h"
#include "qt/HandlerGuard.h"
#include "qt/adapters/QtApplication.h"
#include "qt/adapters/QtAuthorizationView.h"
#include "qt/adapters/QtBusyIndicator.h"
#include "qt/adapters/QtButton.h"
#include "qt/adapters/QtLabel.h"
#include "qt/adapters/QtNotice.h"
#include "qt/adapters/QtPopUpButton.h"
#include "qt/adapters/QtProgressIndicator.h"
#include "qt/adapters/QtTabView.h"
#include "qt/adapters/QtTableView.h"
#include "qt/adapters/QtWindow.h"
#include "qt/platform/SettingsFile.h"
#include "qt/windows/MainMenu.h"

class QMainWindow;

namespace corvane::qt {

/// The interface file "MainWindow", brought to life: the window with its panes, the progress sheet and the
/// menu bar. The members bear the names of the file's objects. Everything is owned here and lives as long as
/// this.
class MainWindowInterface final {
    struct Form;
    /// First in, last out: the adapters below stand on the form's widgets.
    std::unique_ptr<Form> form_;

public:
    MainWindowInterface(QtApplication& application, platform::AuthorizationService& authorization,
                        SettingsFile& settings, HandlerGuard& guard);
    ~MainWindowInterface();
    MainWindowInterface(const MainWindowInterface&) = delete;
    MainWindowInterface& operator=(const MainWindowInterface&) = delete;

    QtWindow window;
    QtTabView mainVsDirectoryEditorTabView; ///< pages "main" and "directoryEditor"
    QtTabView mainTabView;                  ///< pages "1", "2" and "3"
    QtWindow progressSheet;
    QtProgressIndicator progressBar;
    QtButton applyButton;
    QtButton helpButton;

    QtTableView selectPlugIn;
    QtButton configPlugIn;
    QtLabel serviceState;

    QtPopUpButton selectSearchPolicy;
    QtTableView selectNode;
    QtButton addNode;
    QtButton deleteNode;
    QtPlainView dragMessage;

    QtPopUpButton selectContactPolicy;
    QtTableView selectNodeContact;
    QtButton addNodeContact;
    QtButton deleteNodeContact;
    QtPlainView dragMessageContact;

    QtNotice trialNotice; ///< at the window's foot
    QtBusyIndicator busy;
    QtNotice unsaved;
    QtButton tryAgain;
    QtButton showSaved;
    QtNotice unsavedContact;
    QtButton tryAgainContact;
    QtButton showSavedContact;
    QtNotice remarks; ///< below the list of each policy
    QtNotice remarksContact;

    QtAuthorizationView authorizationView;
    MainMenu menu;

    /// Where a record editor goes; says that there is none until something else is put into it.
    [[nodiscard]] QWidget& directoryEditorPage() const;
    [[nodiscard]] QMainWindow& shell() const;
};

/// Before the application object is made: windows are laid out for a screen of double density, so that
/// pictures of them are sharp in every part. The user's own setting goes first.
void prepareForPictures();
/// Saves a picture of the window's contents with its sheets, at double density, in the format that the file's
/// name ends with. False when the file can't be written.
[[nodiscard]] bool renderToFile(QWidget& window, const QString& path);

} // namespace corvane::qt
