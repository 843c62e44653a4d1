#pragma once

/* The boundary between Corvane and its configuration plug-ins, in plain C.
 *
 * A plug-in is a shared object named NAME.cvplug that exports one function, CORVANE_PLUGIN_SYMBOL, of the
 * type CorvanePluginFactory. NAME is the connector that it configures. Rules that hold for every entry:
 *  - Everything is called on the main thread, and plug-ins call the host on the main thread only. An entry of
 * CorvaneHost refuses a call from another thread with a line in the log; the other tables don't look.
 *  - An entry that is null, or lies beyond `size`, isn't implemented; the host then applies its default.
 *  - Truth values are 0 (false) and anything else (true). Texts are UTF-8 (the host puts U+FFFD in place of
 * bytes that aren't, and logs it once), end with a NUL and are borrowed for the length of the call; a text
 * that a plug-in returns stays valid until its next call.
 *  - No exception may leave an entry.
 *  - Tables only grow at their end. A plug-in looks at `size` before it calls an entry that its oldest host
 * may lack.
 */

#include "Directory.h"
#include "Formatters.h"
#include "Forms.h"
#include "Objects.h"
#include "Settings.h"
#include "Tasks.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The version of CorvanePlugin and CorvaneHost that these headers describe. It changes only when a table
 * could not be grown at its end. */
#define CORVANE_PLUGIN_VERSION 2
#define CORVANE_PLUGIN_SYMBOL "corvane_plugin_for_host"
/* In front of the factory's definition, so that the module exports it whatever it hides otherwise. */
#ifdef __cplusplus
#define CORVANE_EXPORT extern "C" __attribute__((visibility("default")))
#else
#define CORVANE_EXPORT __attribute__((visibility("default")))
#endif

/* What the host says of itself before it asks for a table. Valid for the length of the call to the factory.
 * The same in every version, but that it may grow at its end. */
typedef struct CorvaneHandshake {
    uint32_t size; /* of this table in bytes, as the host knows it */
    /* The versions of CorvanePlugin that the host can use, both included. */
    uint32_t oldestVersion;
    uint32_t newestVersion;
    /* The connector that the module is loaded for: the module's file name without ".cvplug". */
    const char* connector;
} CorvaneHandshake;

/* What a plug-in says of itself, for the log and for messages about failures. Texts may be null or empty. */
typedef struct CorvaneAbout {
    uint32_t size; /* of this table in bytes, as the plug-in knows it */
    const char* name;
    const char* version;  /* the plug-in's own: "1.4.2" */
    const char* author;   /* whom a user may ask */
    const char* homePage; /* "https://example.com/plug-in" */
} CorvaneAbout;

/* Takes a sentence that says why something can't be done; the text is borrowed for the length of the call. */
typedef void (*CorvaneReasonTaker)(void* context, const char* reason);

/* Takes an answer. */
typedef void (*CorvaneTruthTaker)(void* context, int8_t answer);

/* An object of the plug-in's that will run something against the directory service and must know with
 * which authorization. Both setters are required. */
typedef struct CorvaneAction {
    uint32_t size; /* of this table in bytes */
    void* self;    /* handed back as the first argument of both */
    /* This machine is configured: `authorization` is borrowed for the length of the call; retain it to keep
     * it. */
    void (*setAuth)(void* self, CorvaneObject* authorization);
    /* A remote server is configured: the form is borrowed for the length of the call, and is all zeros when
     * it could not be made. */
    void (*setRemoteAuthExtForm)(void* self, const uint8_t form[32]);
} CorvaneAction;

/* What the host offers a plug-in. Lives as long as the plug-in object that it was given to. The host keeps
 * nothing for the plug-in: each answer is the present one, of the connection that the window has now. */
typedef struct CorvaneHost {
    uint32_t size;    /* of this table in bytes, as the host knows it */
    uint32_t version; /* of this table: that of the plug-in's own */
    void* context;    /* handed back as the first argument of every entry */

    const CorvaneObjects* objects;
    const CorvaneDirectory* directory;
    const CorvaneFormatters* formatters;

    /* Writes one line to the process log, with the plug-in's name in front. Never a secret. */
    void (*log)(void* context, const char* line);
    /* Tells the host that an operation of the plug-in failed unexpectedly; the host shows it to the user. */
    void (*pluginFailed)(void* context, const char* operation, const char* reason);

    /* The value that data holds as a property list, XML or binary; null when it holds none, and `error`,
     * unless it is null, receives a dictionary as in Directory.h that says where and why. Arrays and
     * dictionaries that come so can't be changed. */
    CorvaneObject* (*propertyListFromData)(void* context, const CorvaneObject* data, CorvaneObject** error);

    /* True when the directory service can be reached; a connection that was lost is made anew first, which
     * may ask for a remote server's password. A failure isn't shown: that is up to the plug-in. */
    int8_t (*preflightDSRef)(void* context);
    /* Makes sure that the user holds the configuration rights, asking for them if needed. False when they
     * were refused. */
    int8_t (*preflightAuthRights)(void* context);
    /* Fills in the 32-byte external form of the present authorization. 0 on success; otherwise the form is
     * worth nothing. A form is as good as a password: overwrite it after use. It stands for the rights that
     * the user holds: make sure of them before, by preflightAuthRights. */
    int32_t (*makeAuthExternalForm)(void* context, uint8_t form[32]);
    /* Hands the right kind of authorization to an action, by one of its two setters. */
    void (*setAuthorizationForHaldenCAction)(void* context, const CorvaneAction* action);
    /* The session with the directory service. Null when there is none. */
    CorvaneObject* (*haldenSession)(void* context);
    /* Kept for plug-ins of an older directory interface, which this host doesn't have: always 0. */
    uint32_t (*dsRef)(void* context);
    /* The user's authorization on this machine. Null when the authorization service can't be reached. */
    CorvaneObject* (*authorization)(void* context);
    /* The authorization service's own name for it; 0 for none. */
    uint64_t (*authorizationRef)(void* context);
    /* The directory service's configuration node. Null when the service can't be reached. */
    CorvaneObject* (*haldenConfigNode)(void* context);
    /* As dsRef: always 0. */
    uint32_t (*configureNodeRef)(void* context);
    /* The network locations of the machine that is configured: an array of dictionaries of the strings
     * "name", "id" and "path". A location without a name gives an empty dictionary, one without an identifier
     * a dictionary with a name alone. */
    CorvaneObject* (*networkSets)(void* context);
    /* The present network location; null when there is none. */
    CorvaneObject* (*currentNetworkSet)(void* context);
    /* The host name of the machine that is configured, a string. */
    CorvaneObject* (*hostName)(void* context);
    /* A new formatter for unsigned whole numbers, without bounds. */
    CorvaneObject* (*numberFormatEnforcer)(void* context);
    /* A new formatter for addresses like 192.0.2.1, or nothing. */
    CorvaneObject* (*ipv4AddressFormatter)(void* context);
    /* A new formatter that lets nothing but the characters of this text be typed; nothing at all with null.
     */
    CorvaneObject* (*validCharacterFormatter)(void* context, const char* characters);
    /* True while a remote server is configured. */
    int8_t (*isRemote)(void* context);
    /* Tells that the plug-in changed its enabled state; the services table is shown anew, whatever the
     * arguments say. */
    void (*pluginEnableStateChanged)(void* context, const char* name, int8_t enabled);

    /* The search policies: their custom lists as they are in the window, saved or not; the automatic lists
     * are the service's. Node names as in "/LDAP/ldap.example.com". Changes touch the window alone; the user,
     * or saveSearchPolicies, saves. Names and prefixes that are null change nothing. */
    /* Has each policy read again when its pane is next shown, at once when it is shown now; what was not
     * saved is gone then. */
    void (*reloadSearchPolicies)(void* context);
    /* Writes the policies that have changed, asking for the rights if needed. False when the rights or the
     * service weren't to be had. What the service refuses is shown to the user and stays unsaved; the answer
     * is true then, too. */
    int8_t (*saveSearchPolicies)(void* context);
    int8_t (*isNodeOnAuthSearchPolicy)(void* context, const char* nodeName);
    int8_t (*isNodeOnContactsSearchPolicy)(void* context, const char* nodeName);
    /* Both add the node at the end, unless it is there, and switch that policy to its custom list. */
    void (*addNodeToAuthSearchPolicy)(void* context, const char* nodeName);
    void (*addNodeToContactsSearchPolicy)(void* context, const char* nodeName);
    void (*deleteNodeFromAuthSearchPolicy)(void* context, const char* nodeName);
    void (*deleteNodeFromContactsSearchPolicy)(void* context, const char* nodeName);
    /* All nodes whose names begin with the text. */
    void (*deleteNodesFromAuthSearchPolicyWithPrefix)(void* context, const char* prefix);
    void (*deleteNodesFromContactsSearchPolicyWithPrefix)(void* context, const char* prefix);
    /* A node is called something else from now on; it keeps its places on both lists. */
    void (*nodeNameChanged)(void* context, const char* from, const char* to);

    /* Marks the window as edited and enables Apply. `sender` may be null, and is ignored. */
    void (*markDirty)(void* context, void* sender);
    /* A prefix is a connector's name, "LDAP". What isn't listed in the window has no version and isn't
     * enabled; while the list is read (in setPluginAPIImplementor and the first canConfigure) both are
     * answered for every connector that the service reports. */
    /* The version text of the connector with this prefix, a string; null when there is no such connector. */
    CorvaneObject* (*pluginVersionWithPrefix)(void* context, const char* prefix);
    /* The version of the system that is configured, a string; null when it isn't known (yet). */
    CorvaneObject* (*osVersion)(void* context);
    /* That version is unknown or older than 10.7. */
    int8_t (*legacyDS)(void* context);
    /* Enabled state of the connector with this prefix, as the user wishes it. */
    int8_t (*isPluginEnabled)(void* context, const char* prefix);
    /* Changes the enabled state of the connector with this prefix and writes it at once. A failure isn't
     * reported; the state is then still wished, and written with the next Apply. */
    void (*setPluginEnabled)(void* context, const char* prefix, int8_t enabled);

    const CorvaneForms* forms;
    const CorvaneTasks* tasks;
    const CorvaneSettings* settings;
    /* A new formatter that lets nothing but the characters of these ranges be typed; nothing at all with
     * none. Null when a range begins after its end or goes beyond U+10FFFF. */
    CorvaneObject* (*characterRangeFormatter)(void* context, const CorvaneCharacterRange* ranges,
                                              uint32_t count);
} CorvaneHost;

/* What a plug-in offers the host. One static table per plug-in, one `self` per object. The window makes an
 * object for each connector whenever it reads the list of connectors (at start, after Revert, with another
 * connection), and destroys the ones before. */
typedef struct CorvanePlugin {
    uint32_t size;    /* of this table in bytes, as the plug-in knows it */
    uint32_t version; /* which version of this table it is; one that the handshake doesn't offer is refused */
    const CorvaneAbout* about; /* may be null; valid for as long as the module is loaded */

    /* Both are required. `create` answers null when no object can be made, after it has called
     * `takeReason(context, ...)`, so that the log and the user hear why. */
    void* (*create)(CorvaneReasonTaker takeReason, void* context);
    void (*destroy)(void* self);

    /* All from here on are optional. Called right after `create`, before any other entry. */
    void (*setPluginAPIImplementor)(void* self, const CorvaneHost* host);
    /* The name shown in the services list; null for the connector's own. */
    const char* (*pluginName)(void* self);
    /* The state of the box "On". `location` is the plug-in's own affair; the host always passes null.
     * Defaults: the state that is wished; true, but for connectors that can't be switched off; keeps the
     * wish. */
    int8_t (*isEnabledForLocation)(void* self, const char* location);
    int8_t (*canSetEnabledForLocation)(void* self, const char* location);
    void (*setEnabledForLocation)(void* self, int8_t enabled, const char* location);
    /* Is the connector listed on a system from version 10.7 on, and can Configure be chosen? Default: true
     * with configureButtonClicked, otherwise whether the service names an external program for it. */
    int8_t (*canConfigure)(void* self);
    /* The user asked for the configuration. `sender` is opaque, and may be null. Default: the external
     * program, or a sheet that says that there is nothing to configure. */
    void (*configureButtonClicked)(void* self, void* sender);
    /* Tries whether what is configured works. No default: without it, nothing is tried. */
    int8_t (*selfTest)(void* self);
    /* Is there anything unsaved? Asked only while the window isn't marked as edited: use markDirty, too.
     * Default: false. */
    int8_t (*isDirty)(void* self);
    /* Apply: asked of every connector, changed or not. False ends the saving, and this connector's enabled
     * state isn't written; the plug-in shows the user why. Default: true. */
    int8_t (*saveChanges)(void* self);
    /* Revert: throw away what is unsaved; the object is destroyed soon after. The answer isn't looked at.
     * Default: true. */
    int8_t (*revertChanges)(void* self);
    /* Before quitting with unsaved changes. Every connector is asked, in the list's order, and the last
     * answer decides, on purpose. `save`: saveChanges follows. Default: true. */
    int8_t (*applicationWillQuitSavingChanges)(void* self, int8_t save);
    /* The same before the lock is closed. The first false ends the asking and keeps the lock open. */
    int8_t (*applicationWillLockSavingChanges)(void* self, int8_t save);
    /* May this node of the connector's be put on a search policy? Default: true. */
    int8_t (*shouldAllowNodeNameOnSearchPolicy)(void* self, const char* nodeName);
    /* The names of the connector's nodes that saveChanges will take away, one by one: asked with 0, 1, 2 and
     * so on until the answer is null. Before anything is saved, the user is asked about those that are used
     * for logging in. Default: none. */
    const char* (*nodesToRemove)(void* self, uint32_t index);
    /* As selfTest, for a test that takes time: it is begun, and `finished` is called once, later, on the main
     * thread, unless the object is destroyed before. With both, this one is used. */
    void (*beginSelfTest)(void* self, CorvaneTruthTaker finished, void* context);
} CorvanePlugin;

/* Answers the module's table in a version that the host can use; null when it has none. Called once, before
 * anything else. A module may have tables of several versions, and serve hosts of each; one that is found
 * under several names may have a table for each connector. */
typedef const CorvanePlugin* (*CorvanePluginFactory)(const CorvaneHandshake* host);

#ifdef __cplusplus
}
#endif
