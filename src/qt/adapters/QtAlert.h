#pragma once

#include <QPointer>
#include <memory>

#include "qt/HandlerGuard.h"
#include "qt/widgets/AlertPanel.h"
#include "toolkit/Alert.h"

namespace corvane::qt {

class QtWindow;

class QtAlert final : public toolkit::Alert {
public:
    explicit QtAlert(HandlerGuard& guard);
    /// An alert that goes while its sheet runs takes the sheet along; nobody is told then.
    ~QtAlert() override;
    QtAlert(const QtAlert&) = delete;
    QtAlert& operator=(const QtAlert&) = delete;

    void setMessageText(std::string_view text) override;
    void setInformativeText(std::string_view text) override;
    void setSpokenText(std::string_view text) override;
    void addButton(std::string_view title) override;
    [[nodiscard]] int runModal() override;
    void beginSheet(toolkit::Window& parent, std::function<void(int answer)> ended) override;

private:
    void arrange();
    void finished(int answer);

    HandlerGuard& guard_;
    std::unique_ptr<AlertPanel> panel_;
    QPointer<QWidget> parentShell_; ///< null when no sheet runs
    QtWindow* parent_ = nullptr;
    std::function<void(int)> ended_;
    bool arranged_ = false;
    QObject context_;
};

} // namespace corvane::qt
