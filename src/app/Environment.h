#pragma once

#include "app/MainWindowOutlets.h"
#include "forms/FormPresenter.h"
#include "halden/Session.h"
#include "platform/Environment.h"
#include "toolkit/Toolkit.h"

namespace corvane::app {

/// The three families of interfaces that the program is built on, the interface files, and what shows forms.
/// Borrowed; outlives the program's objects.
struct Environment {
    platform::Environment& platform;
    toolkit::Toolkit& toolkit;
    halden::Framework& halden;
    InterfaceLoader& interfaces;
    forms::FormPresenter& formPresenter;
    /// The program works on a private folder made for trials, not on the machine itself.
    bool worksOnTrialFolder = false;
    /// What isn't there yet isn't offered: the menus show it grey.
    bool canConnectToServers = true;
    bool canChangeRootUser = true;
};

} // namespace corvane::app
