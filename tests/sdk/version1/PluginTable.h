#pragma once

/* What a module of plug-in version 1 was built with, as it was: recorded, never changed. Version 1 had no
 * handshake. The names are this version's; only one of the two PluginTable.h can be included. */

#include <stdint.h>

typedef struct CorvaneHost CorvaneHost;

#define CORVANE_PLUGIN_VERSION 1
#define CORVANE_EXPORT __attribute__((visibility("default")))

typedef struct CorvanePlugin {
    uint32_t size;
    uint32_t version;
    void* (*create)(void);
    void (*destroy)(void* self);
    void (*setPluginAPIImplementor)(void* self, const CorvaneHost* host);
    const char* (*pluginName)(void* self);
    int8_t (*isEnabledForLocation)(void* self, const char* location);
    int8_t (*canSetEnabledForLocation)(void* self, const char* location);
    void (*setEnabledForLocation)(void* self, int8_t enabled, const char* location);
    int8_t (*canConfigure)(void* self);
    void (*configureButtonClicked)(void* self, void* sender);
    int8_t (*selfTest)(void* self);
    int8_t (*isDirty)(void* self);
    int8_t (*saveChanges)(void* self);
    int8_t (*revertChanges)(void* self);
    int8_t (*applicationWillQuitSavingChanges)(void* self, int8_t save);
    int8_t (*applicationWillLockSavingChanges)(void* self, int8_t save);
    int8_t (*shouldAllowNodeNameOnSearchPolicy)(void* self, const char* nodeName);
    const char* (*nodesToRemove)(void* self, uint32_t index);
} CorvanePlugin;
