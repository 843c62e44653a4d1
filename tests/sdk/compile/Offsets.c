/* Where each entry of the plug-in boundary is, in bytes from the start of its table, on machines of 64 bits. An
 * entry that is published never moves: modules that were built before would call another one. A new entry gets a
 * line at the end of its table. Compiled as C and as C++; there is nothing to run. */
#include <assert.h>
#include <stddef.h>

#include "sdk/PluginTable.h"

#define AT(table, entry, offset) static_assert(offsetof(table, entry) == (offset), #table "." #entry " has moved")

static_assert(sizeof(void*) == 8, "the offsets are those of machines of 64 bits");

AT(CorvaneObjects, size, 0);
AT(CorvaneObjects, retain, 8);
AT(CorvaneObjects, release, 16);
AT(CorvaneObjects, kind, 24);
AT(CorvaneObjects, description, 32);
AT(CorvaneObjects, makeString, 40);
AT(CorvaneObjects, makeInteger, 48);
AT(CorvaneObjects, makeUnsigned, 56);
AT(CorvaneObjects, makeReal, 64);
AT(CorvaneObjects, makeBoolean, 72);
AT(CorvaneObjects, makeDate, 80);
AT(CorvaneObjects, makeData, 88);
AT(CorvaneObjects, makeArray, 96);
AT(CorvaneObjects, makeDictionary, 104);
AT(CorvaneObjects, append, 112);
AT(CorvaneObjects, setValueForKey, 120);
AT(CorvaneObjects, text, 128);
AT(CorvaneObjects, bytes, 136);
AT(CorvaneObjects, integer, 144);
AT(CorvaneObjects, real, 152);
AT(CorvaneObjects, boolean, 160);
AT(CorvaneObjects, date, 168);
AT(CorvaneObjects, count, 176);
AT(CorvaneObjects, at, 184);
AT(CorvaneObjects, keys, 192);
AT(CorvaneObjects, valueForKey, 200);

AT(CorvaneDirectory, size, 0);
AT(CorvaneDirectory, nodeNames, 8);
AT(CorvaneDirectory, nodeWithName, 16);
AT(CorvaneDirectory, nodeName, 24);
AT(CorvaneDirectory, nodeDetails, 32);
AT(CorvaneDirectory, subnodeNames, 40);
AT(CorvaneDirectory, records, 48);
AT(CorvaneDirectory, customCall, 56);
AT(CorvaneDirectory, customCallWithAuthorization, 64);
AT(CorvaneDirectory, customCallSendPropertyList, 72);
AT(CorvaneDirectory, customCallSendItems, 80);
AT(CorvaneDirectory, standardRecordTypes, 88);
AT(CorvaneDirectory, standardAttributeTypes, 96);

AT(CorvaneFormatters, size, 0);
AT(CorvaneFormatters, isPartialStringValid, 8);
AT(CorvaneFormatters, objectValueForString, 16);
AT(CorvaneFormatters, stringForObjectValue, 24);
AT(CorvaneFormatters, setMinimum, 32);
AT(CorvaneFormatters, setMaximum, 40);

AT(CorvaneCharacterRange, first, 0);
AT(CorvaneCharacterRange, last, 4);

AT(CorvaneForms, size, 0);
AT(CorvaneForms, open, 8);
AT(CorvaneForms, isOpen, 16);
AT(CorvaneForms, raise, 24);
AT(CorvaneForms, close, 32);
AT(CorvaneForms, value, 40);
AT(CorvaneForms, set, 48);
AT(CorvaneForms, complain, 56);
AT(CorvaneForms, suggest, 64);

AT(CorvaneFormListener, size, 0);
AT(CorvaneFormListener, self, 8);
AT(CorvaneFormListener, happened, 16);

AT(CorvaneTasks, size, 0);
AT(CorvaneTasks, post, 8);
AT(CorvaneTasks, startTimer, 16);
AT(CorvaneTasks, customCall, 24);
AT(CorvaneTasks, customCallSendPropertyList, 32);
AT(CorvaneTasks, records, 40);
AT(CorvaneTasks, cancel, 48);

AT(CorvaneSettings, size, 0);
AT(CorvaneSettings, containsKey, 8);
AT(CorvaneSettings, integerForKey, 16);
AT(CorvaneSettings, unsignedForKey, 24);
AT(CorvaneSettings, booleanForKey, 32);
AT(CorvaneSettings, stringForKey, 40);
AT(CorvaneSettings, arrayForKey, 48);
AT(CorvaneSettings, dictionaryForKey, 56);
AT(CorvaneSettings, dataForKey, 64);
AT(CorvaneSettings, mutableDeepCopy, 72);
AT(CorvaneSettings, setInteger, 80);
AT(CorvaneSettings, setUnsigned, 88);
AT(CorvaneSettings, setBoolean, 96);
AT(CorvaneSettings, setExists, 104);
AT(CorvaneSettings, setString, 112);
AT(CorvaneSettings, setNumber, 120);
AT(CorvaneSettings, setArray, 128);
AT(CorvaneSettings, setDictionary, 136);
AT(CorvaneSettings, setData, 144);

AT(CorvaneHandshake, size, 0);
AT(CorvaneHandshake, oldestVersion, 4);
AT(CorvaneHandshake, newestVersion, 8);
AT(CorvaneHandshake, connector, 16);

AT(CorvaneAbout, size, 0);
AT(CorvaneAbout, name, 8);
AT(CorvaneAbout, version, 16);
AT(CorvaneAbout, author, 24);
AT(CorvaneAbout, homePage, 32);

AT(CorvaneAction, size, 0);
AT(CorvaneAction, self, 8);
AT(CorvaneAction, setAuth, 16);
AT(CorvaneAction, setRemoteAuthExtForm, 24);

AT(CorvaneHost, size, 0);
AT(CorvaneHost, version, 4);
AT(CorvaneHost, context, 8);
AT(CorvaneHost, objects, 16);
AT(CorvaneHost, directory, 24);
AT(CorvaneHost, formatters, 32);
AT(CorvaneHost, log, 40);
AT(CorvaneHost, pluginFailed, 48);
AT(CorvaneHost, propertyListFromData, 56);
AT(CorvaneHost, preflightDSRef, 64);
AT(CorvaneHost, preflightAuthRights, 72);
AT(CorvaneHost, makeAuthExternalForm, 80);
AT(CorvaneHost, setAuthorizationForHaldenCAction, 88);
AT(CorvaneHost, haldenSession, 96);
AT(CorvaneHost, dsRef, 104);
AT(CorvaneHost, authorization, 112);
AT(CorvaneHost, authorizationRef, 120);
AT(CorvaneHost, haldenConfigNode, 128);
AT(CorvaneHost, configureNodeRef, 136);
AT(CorvaneHost, networkSets, 144);
AT(CorvaneHost, currentNetworkSet, 152);
AT(CorvaneHost, hostName, 160);
AT(CorvaneHost, numberFormatEnforcer, 168);
AT(CorvaneHost, ipv4AddressFormatter, 176);
AT(CorvaneHost, validCharacterFormatter, 184);
AT(CorvaneHost, isRemote, 192);
AT(CorvaneHost, pluginEnableStateChanged, 200);
AT(CorvaneHost, reloadSearchPolicies, 208);
AT(CorvaneHost, saveSearchPolicies, 216);
AT(CorvaneHost, isNodeOnAuthSearchPolicy, 224);
AT(CorvaneHost, isNodeOnContactsSearchPolicy, 232);
AT(CorvaneHost, addNodeToAuthSearchPolicy, 240);
AT(CorvaneHost, addNodeToContactsSearchPolicy, 248);
AT(CorvaneHost, deleteNodeFromAuthSearchPolicy, 256);
AT(CorvaneHost, deleteNodeFromContactsSearchPolicy, 264);
AT(CorvaneHost, deleteNodesFromAuthSearchPolicyWithPrefix, 272);
AT(CorvaneHost, deleteNodesFromContactsSearchPolicyWithPrefix, 280);
AT(CorvaneHost, nodeNameChanged, 288);
AT(CorvaneHost, markDirty, 296);
AT(CorvaneHost, pluginVersionWithPrefix, 304);
AT(CorvaneHost, osVersion, 312);
AT(CorvaneHost, legacyDS, 320);
AT(CorvaneHost, isPluginEnabled, 328);
AT(CorvaneHost, setPluginEnabled, 336);
AT(CorvaneHost, forms, 344);
AT(CorvaneHost, tasks, 352);
AT(CorvaneHost, settings, 360);
AT(CorvaneHost, characterRangeFormatter, 368);

AT(CorvanePlugin, size, 0);
AT(CorvanePlugin, version, 4);
AT(CorvanePlugin, about, 8);
AT(CorvanePlugin, create, 16);
AT(CorvanePlugin, destroy, 24);
AT(CorvanePlugin, setPluginAPIImplementor, 32);
AT(CorvanePlugin, pluginName, 40);
AT(CorvanePlugin, isEnabledForLocation, 48);
AT(CorvanePlugin, canSetEnabledForLocation, 56);
AT(CorvanePlugin, setEnabledForLocation, 64);
AT(CorvanePlugin, canConfigure, 72);
AT(CorvanePlugin, configureButtonClicked, 80);
AT(CorvanePlugin, selfTest, 88);
AT(CorvanePlugin, isDirty, 96);
AT(CorvanePlugin, saveChanges, 104);
AT(CorvanePlugin, revertChanges, 112);
AT(CorvanePlugin, applicationWillQuitSavingChanges, 120);
AT(CorvanePlugin, applicationWillLockSavingChanges, 128);
AT(CorvanePlugin, shouldAllowNodeNameOnSearchPolicy, 136);
AT(CorvanePlugin, nodesToRemove, 144);
AT(CorvanePlugin, beginSelfTest, 152);
