/* One damage at a time, chosen by the build. */
#include <corvane/PluginTable.h>

#ifndef VERSION
#define VERSION CORVANE_PLUGIN_VERSION
#endif
#ifndef SIZE
#define SIZE sizeof(CorvanePlugin)
#endif
#ifndef CREATE
#define CREATE create
#endif
#ifndef TABLE
#define TABLE &table
#endif

void* create(CorvaneReasonTaker takeReason, void* context) {
    (void)takeReason;
    (void)context;
    return 0;
}
static void destroy(void* self) { (void)self; }
static int8_t canConfigure(void* self) { return self == 0; }

CORVANE_EXPORT const CorvanePlugin* corvane_plugin_for_host(const CorvaneHandshake* host) {
    (void)host;
    static CorvanePlugin table = {
        .size = SIZE, .version = VERSION, .create = CREATE, .destroy = destroy, .canConfigure = canConfigure};
    (void)table;
    return TABLE;
}
