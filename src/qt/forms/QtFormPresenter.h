#pragma once

#include "forms/Form.h"
#include "qt/HandlerGuard.h"

namespace corvane::qt {

/// Shows forms as windows in front of the one that is in front now, and messages as message boxes. Main
/// thread.
class QtFormPresenter final : public forms::FormPresenter {
public:
    /// `guard` outlives the presenter and its windows.
    explicit QtFormPresenter(HandlerGuard& guard) : guard_(guard) {}
    [[nodiscard]] std::unique_ptr<forms::FormWindow> present(forms::Form& form) override;

private:
    HandlerGuard& guard_;
};

} // namespace corvane::qt
