#pragma once

/* The boundary between Corvane and its configuration plug-ins, in plain C.
 *
 * A plug-in is a shared object named NAME.cvplug that exports one function, CORVANE_PLUGIN_SYMBOL, of the
 * type CorvanePluginFactory. NAME is the connector that it configures. Rules that hold for every entry:
 *  - Everything is called on the main thread, and plug-ins call the host on the main thread only.
 *  - An entry that is null, or lies beyond `size`, isn't implemented; the host then applies its default.
 *  - Truth values are 0 (false) and anything else (true). Texts are UTF-8, end with a NUL and are borrowed
 * for the length of the call; a text that a plug-in returns stays valid until its next call.
 *  - No exception may leave an entry.
 */

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define CORVANE_PLUGIN_VERSION 1
#define CORVANE_PLUGIN_SYMBOL "corvane_plugin"

/* What the host offers a plug-in. Lives as long as the plug-in object that it was given to. */
typedef struct CorvaneHost {
    uint32_t size;    /* of this table in octets, as the host knows it */
    uint32_t version; /* CORVANE_PLUGIN_VERSION of the host */
    void* context;    /* handed back as the first argument of every entry */

    /* Writes one line to the process log. */
    void (*log)(void* context, const char* line);
    /* Tells the host that an operation of the plug-in failed unexpectedly; the host shows it to the user. */
    void (*pluginFailed)(void* context, const char* operation, const char* reason);
    /* True while a remote server is configured. */
    int8_t (*isRemote)(void* context);
    /* Makes sure that the user holds the configuration rights, asking if needed. */
    int8_t (*preflightAuthRights)(void* context);
    /* Fills in the 32-octet external form of the authorization; 0 on success. */
    int32_t (*makeAuthExternalForm)(void* context, uint8_t form[32]);
    /* Marks the window as edited and enables Apply. */
    void (*markDirty)(void* context);
    /* Tells that the plug-in changed its enabled state; the services list is shown anew. */
    void (*pluginEnableStateChanged)(void* context, const char* name, int8_t enabled);
    /* Enabled state of the connector with this prefix. */
    int8_t (*isPluginEnabled)(void* context, const char* prefix);
    /* Changes the enabled state of the connector with this prefix and writes it at once. */
    void (*setPluginEnabled)(void* context, const char* prefix, int8_t enabled);
} CorvaneHost;

/* What a plug-in offers the host. One static table per plug-in, one `self` per object. */
typedef struct CorvanePlugin {
    uint32_t size;    /* of this table in octets, as the plug-in knows it */
    uint32_t version; /* CORVANE_PLUGIN_VERSION that the plug-in was built for; the host refuses any other */

    /* Both are required. `create` answers null when no object can be made. */
    void* (*create)(void);
    void (*destroy)(void* self);

    /* All from here on are optional. Called right after `create`, before any other entry. */
    void (*setPluginAPIImplementor)(void* self, const CorvaneHost* host);
    /* The name shown in the services list; null for the connector's own. */
    const char* (*pluginName)(void* self);
    /* `location` is the plug-in's own affair; the host always passes null. */
    int8_t (*isEnabledForLocation)(void* self, const char* location);
    int8_t (*canSetEnabledForLocation)(void* self, const char* location);
    void (*setEnabledForLocation)(void* self, int8_t enabled, const char* location);
    int8_t (*canConfigure)(void* self);
    /* The user asked for the configuration. `sender` is opaque, and may be null. */
    void (*configureButtonClicked)(void* self, void* sender);
    int8_t (*selfTest)(void* self);
    int8_t (*isDirty)(void* self);
    int8_t (*saveChanges)(void* self);
    int8_t (*revertChanges)(void* self);
    int8_t (*applicationWillQuitSavingChanges)(void* self, int8_t save);
    int8_t (*applicationWillLockSavingChanges)(void* self, int8_t save);
    int8_t (*shouldAllowNodeNameOnSearchPolicy)(void* self, const char* nodeName);
} CorvanePlugin;

typedef const CorvanePlugin* (*CorvanePluginFactory)(void);

#ifdef __cplusplus
}
#endif
