#pragma once

#include "formatters/ValidCharacterFormatter.h"
#include "toolkit/Application.h"

namespace corvane::formatters {

/// The toolkit's own sound for the formatters of a program's fields. Main thread.
class ToolkitBeep final : public ValidCharacterFormatter::Needs {
public:
    /// `application` outlives this.
    explicit ToolkitBeep(toolkit::Application& application) : application_(application) {}
    void beep() override { application_.beep(); }

private:
    toolkit::Application& application_;
};

} // namespace corvane::formatters
