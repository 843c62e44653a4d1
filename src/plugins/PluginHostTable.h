#pragma once

#include <memory>
#include <string>
#include <thread>

#include "plugins/PluginAPIImplementor.h"
#include "plugins/PluginForms.h"
#include "plugins/PluginTasks.h"
#include "sdk/PluginTable.h"

namespace corvane::plugins {

/// The host interface in the form that crosses the module boundary: one table per plug-in object, so that the
/// host knows who is calling; the forms that it has open and what it waits for end with it. Nothing that the
/// host throws reaches the plug-in, and a call from another thread than the one that made the table is
/// refused and logged. Main thread.
class PluginHostTable {
public:
    PluginHostTable(std::shared_ptr<PluginAPIImplementor> implementor, std::string pluginName);
    PluginHostTable(const PluginHostTable&) = delete;
    PluginHostTable& operator=(const PluginHostTable&) = delete;

    [[nodiscard]] const CorvaneHost& table() const { return table_; }
    [[nodiscard]] PluginForms& forms() { return forms_; }
    [[nodiscard]] PluginTasks& tasks() { return tasks_; }

private:
    struct Entry;
    void fillMessages();
    void fillAuthorization();
    void fillDirectory();
    void fillMachine();
    void fillFormatters();
    void fillPolicyQuestions();
    void fillPolicyChanges();
    void fillEnabledState();
    void fillVersions();

    CorvaneHost table_{};
    std::shared_ptr<PluginAPIImplementor> implementor_;
    std::string pluginName_;
    PluginForms forms_{PluginCallbacks(implementor_, pluginName_)};
    PluginTasks tasks_{PluginCallbacks(implementor_, pluginName_)};
    std::thread::id thread_ = std::this_thread::get_id();
};

} // namespace corvane::plugins
