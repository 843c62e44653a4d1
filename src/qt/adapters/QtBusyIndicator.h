#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <chrono>

#include "toolkit/Controls.h"

class QLabel;

namespace corvane::qt {

/// A line at the window's foot and the clock for a pointer. Nothing is drawn while the main thread works: the
/// work calls `stillBusy` again and again, and the line is drawn by the first call after a moment has passed.
class QtBusyIndicator final : public QObject, public toolkit::BusyIndicator {
public:
    static constexpr std::chrono::milliseconds aMoment{300};

    /// `note` outlives the indicator, is in its window already and has room for the texts.
    explicit QtBusyIndicator(QLabel& note, std::chrono::milliseconds delay = aMoment);
    ~QtBusyIndicator() override;
    QtBusyIndicator(const QtBusyIndicator&) = delete;
    QtBusyIndicator& operator=(const QtBusyIndicator&) = delete;

    void begin(std::string_view text) override;
    void end() override;
    /// The work goes on. Draws by itself and handles no events. Does nothing outside of `begin` and `end`,
    /// and while the user is asked something.
    void stillBusy();

    bool eventFilter(QObject* window, QEvent* event) override;

private:
    void show();
    void hide();

    QLabel& note_;
    const std::chrono::milliseconds delay_;
    QString text_; ///< null while the program isn't busy
    QElapsedTimer since_;
    bool shown_ = false;
};

} // namespace corvane::qt
