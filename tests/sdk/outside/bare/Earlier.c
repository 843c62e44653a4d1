/* A plug-in that was built with the first headers of version 2, before tables grew at their ends. */
#include <stdio.h>
#include <version2/PluginTable.h>

static const CorvaneHost* theHost;
static int object;

static void* create(CorvaneReasonTaker takeReason, void* context) {
    (void)takeReason, (void)context;
    return &object;
}
static void destroy(void* self) { (void)self; }
static void setHost(void* self, const CorvaneHost* host) {
    (void)self;
    theHost = host;
}
static const char* name(void* self) {
    static char text[100];
    CorvaneObject* made = theHost->objects->makeString("a string", 8);
    (void)self;
    snprintf(text, sizeof text, "a host that %s, %s", theHost->size > sizeof(CorvaneHost) ? "has grown" : "is as old",
             theHost->objects->text(made, 0));
    theHost->objects->release(made);
    theHost->markDirty(theHost->context, 0);
    return text;
}

CORVANE_EXPORT const CorvanePlugin* corvane_plugin_for_host(const CorvaneHandshake* host) {
    static const CorvanePlugin table = {.size = sizeof(CorvanePlugin),
                                        .version = CORVANE_PLUGIN_VERSION,
                                        .create = create,
                                        .destroy = destroy,
                                        .setPluginAPIImplementor = setHost,
                                        .pluginName = name};
    return host->oldestVersion <= table.version && table.version <= host->newestVersion ? &table : 0;
}
