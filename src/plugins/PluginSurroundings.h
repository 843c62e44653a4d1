#pragma once

#include "forms/Form.h"
#include "platform/RunLoop.h"
#include "plugins/BackgroundCalls.h"

namespace corvane::plugins {

/// What of the program's plug-ins are served with besides answers: windows, and time. All of it outlives
/// them.
struct PluginSurroundings {
    forms::FormPresenter& formPresenter;
    forms::FieldTools fieldTools;
    platform::RunLoop& runLoop;
    BackgroundCalls& background;
};

} // namespace corvane::plugins
