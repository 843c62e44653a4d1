/* One binary for two hosts: a table of this version, and one of the next for hosts that can use it. */
#include <corvane/PluginTable.h>

static int object;
static void* create(CorvaneReasonTaker takeReason, void* context) {
    (void)takeReason;
    (void)context;
    return &object;
}
static void destroy(void* self) { (void)self; }
static int8_t yes(void* self) { return self == &object; }
static const char* name(void* self) {
    (void)self;
    return "of version 2";
}

CORVANE_EXPORT const CorvanePlugin* corvane_plugin_for_host(const CorvaneHandshake* host) {
    static const CorvaneAbout about = {sizeof(CorvaneAbout), "Two Hosts", "2.5", "Jane Doe", "https://example.com"};
    static const CorvanePlugin present = {.size = sizeof(CorvanePlugin),
                                          .version = CORVANE_PLUGIN_VERSION,
                                          .about = &about,
                                          .create = create,
                                          .destroy = destroy,
                                          .pluginName = name,
                                          .canConfigure = yes};
    /* Version 3 may look otherwise behind these two fields; this host never reads further. */
    static const CorvanePlugin next = {.size = sizeof(CorvanePlugin), .version = CORVANE_PLUGIN_VERSION + 1};
    if (host->newestVersion > CORVANE_PLUGIN_VERSION) return &next;
    return host->oldestVersion <= CORVANE_PLUGIN_VERSION && host->newestVersion == CORVANE_PLUGIN_VERSION ? &present : 0;
}
