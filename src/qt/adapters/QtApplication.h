#pragma once

#include <QApplication>
#include <functional>
#include <string>
#include <vector>

#include "qt/HandlerGuard.h"
#include "qt/widgets/HelpWindow.h"
#include "toolkit/Application.h"

class QEventLoop;

namespace corvane::qt {

class QtWindow;

/// The program's application object on Qt's.
class QtApplication final : public toolkit::Application {
public:
    QtApplication(QApplication& application, HandlerGuard& guard);
    ~QtApplication() override;
    QtApplication(const QtApplication&) = delete;
    QtApplication& operator=(const QtApplication&) = delete;

    // The program's side; each may be left empty.
    std::function<bool()> shouldTerminate; ///< false cancels the quit
    std::function<void()> willTerminate;
    std::function<void(bool active)> activeChanged;
    /// Sees every key event before Qt dispatches it; true takes it away.
    std::function<bool(const toolkit::Event&)> sendEvent;
    /// Makes the window that `orderFrontStandardAboutPanel` shows, from the options that came with the first
    /// call. Without it there is none.
    std::function<std::unique_ptr<QWidget>(const std::map<std::string, std::string>& options)> makeAboutPanel;

    /// Windows whose state is put into the settings when the application ends.
    void keepsStateOf(QtWindow& window) { windows_.push_back(&window); }

    [[nodiscard]] bool isActive() const override;
    void terminate() override;
    [[nodiscard]] int runModalForWindow(toolkit::Window& window) override;
    void stopModal(int code) override;
    void beep() override { QApplication::beep(); }
    /// Options "NoticeStartYear" and "NoticeEndYear" are the years of the copyright notice.
    void orderFrontStandardAboutPanel(const std::map<std::string, std::string>& options) override;
    void openHelpAnchor(std::string_view anchor, std::string_view book) override;

private:
    class EventFilter;
    [[nodiscard]] QWidget* parentWindow() const;
    struct ModalRun {
        QEventLoop* loop;
        int code;
    };
    QApplication& application_;
    HandlerGuard& guard_;
    std::unique_ptr<EventFilter> filter_;
    std::vector<ModalRun*> modal_;
    std::vector<QtWindow*> windows_;
    std::unique_ptr<QWidget> aboutPanel_;
    std::unique_ptr<HelpWindow> help_;
    bool terminating_ = false;
    QObject context_;
};

} // namespace corvane::qt
