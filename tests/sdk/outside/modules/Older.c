/* A plug-in in plain C, built when the table ended behind `canConfigure`. */
#include <corvane/PluginTable.h>
#include <stddef.h>

static int object;
static void* create(CorvaneReasonTaker takeReason, void* context) {
    (void)takeReason;
    (void)context;
    return &object;
}
static void destroy(void* self) { (void)self; }
static int8_t canConfigure(void* self) { return self == &object; }

CORVANE_EXPORT const CorvanePlugin* corvane_plugin_for_host(const CorvaneHandshake* host) {
    (void)host;
    static CorvanePlugin table = {.size = offsetof(CorvanePlugin, configureButtonClicked),
                                  .version = CORVANE_PLUGIN_VERSION,
                                  .create = create,
                                  .destroy = destroy,
                                  .canConfigure = canConfigure};
    /* What lies beyond the size is no table: calling it would end the program. */
    table.isDirty = (int8_t(*)(void*))(void*)1;
    return &table;
}
