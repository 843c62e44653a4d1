#pragma once

#include <QProgressBar>

#include "qt/adapters/QtView.h"
#include "toolkit/Controls.h"

namespace corvane::qt {

class QtProgressIndicator final : public QtView<toolkit::ProgressIndicator, QProgressBar> {
public:
    explicit QtProgressIndicator(QProgressBar& bar);
    void setIndeterminate(bool indeterminate) override;
    [[nodiscard]] bool isIndeterminate() const override { return indeterminate_; }
    /// Qt draws on the main thread alone: the bar rests while that is busy.
    void setUsesThreadedAnimation(bool) override {}
    void startAnimation() override;
    void stopAnimation() override;
    [[nodiscard]] bool isAnimating() const { return animating_; }
    void setNeedsDisplay() override;
    void display() override;

private:
    void apply();

    bool indeterminate_ = true;
    bool animating_ = false;
};

} // namespace corvane::qt
