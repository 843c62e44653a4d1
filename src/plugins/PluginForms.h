#pragma once

#include <memory>
#include <vector>

#include "forms/Form.h"
#include "plugins/PluginCallbacks.h"
#include "sdk/Forms.h"

namespace corvane::plugins {

/// The forms that one plug-in object has open. They are closed with this, without a word to the
/// plug-in. Main thread.
class PluginForms {
public:
    explicit PluginForms(PluginCallbacks callbacks) : callbacks_(std::move(callbacks)) {}
    PluginForms(const PluginForms&) = delete;
    PluginForms& operator=(const PluginForms&) = delete;
    ~PluginForms();

    /// Throws `forms::FormError` for a description that can't be shown. `listener` is copied.
    [[nodiscard]] std::shared_ptr<forms::Form> open(const util::Dictionary& description,
                                                    const CorvaneFormListener* listener);

private:
    PluginCallbacks callbacks_;
    std::vector<std::weak_ptr<forms::Form>> open_; ///< and some that were closed; an open one holds itself
};

/// The table, the same for every plug-in. The context of `open` is a `PluginHostTable`.
[[nodiscard]] const CorvaneForms& hostFormsTable();

} // namespace corvane::plugins
