/* A plug-in that was built with the headers of version 1, which had no handshake. Nothing of it may run. */
#include <stdlib.h>
#include <version1/PluginTable.h>

static int object;
static void* create(void) { return &object; }
static void destroy(void* self) { (void)self; }
static int8_t canConfigure(void* self) { return self == &object; }

CORVANE_EXPORT const CorvanePlugin* corvane_plugin(void) {
    static const CorvanePlugin table = {.size = sizeof(CorvanePlugin),
                                        .version = CORVANE_PLUGIN_VERSION,
                                        .create = create,
                                        .destroy = destroy,
                                        .canConfigure = canConfigure};
    abort();
    return &table;
}
