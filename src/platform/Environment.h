#pragma once

#include "platform/Authorization.h"
#include "platform/Bundle.h"
#include "platform/DynamicStore.h"
#include "platform/LocalizedStrings.h"
#include "platform/NetworkConfiguration.h"
#include "platform/PropertyListCodec.h"
#include "platform/RunLoop.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"
#include "util/NotificationCenter.h"
#include "util/ProcessLog.h"

namespace corvane::platform {

/// Everything of the machine that the program uses, handed in once at the start. All of it is borrowed and
/// outlives the program's objects.
struct Environment {
    RunLoop& runLoop;
    UserDefaults& userDefaults;
    Workspace& workspace;
    LocalizedStrings& strings;
    AuthorizationService& authorizationService;
    DynamicStore& dynamicStore;
    PropertyListCodec& propertyLists;
    BundleLoader& bundles;
    NetworkConfiguration& networkConfiguration;
    util::NotificationCenter& notifications;
    util::ProcessLog& log;
};

} // namespace corvane::platform
