/* Every table of the plug-in boundary in the interface of one small library: what scripts/check_abi.sh compares. */
#include "sdk/PluginTable.h"

CORVANE_EXPORT void corvane_tables(const CorvaneHandshake* handshake, const CorvaneAbout* about,
                                   const CorvanePlugin* plugin, const CorvaneHost* host, const CorvaneAction* action,
                                   const CorvaneObjects* objects, const CorvaneDirectory* directory,
                                   const CorvaneFormatters* formatters, CorvanePluginFactory factory,
                                   enum CorvaneKind kind);
void corvane_tables(const CorvaneHandshake* handshake, const CorvaneAbout* about, const CorvanePlugin* plugin,
                    const CorvaneHost* host, const CorvaneAction* action, const CorvaneObjects* objects,
                    const CorvaneDirectory* directory, const CorvaneFormatters* formatters,
                    CorvanePluginFactory factory, enum CorvaneKind kind) {
    (void)handshake, (void)about, (void)plugin, (void)host, (void)action, (void)objects, (void)directory,
        (void)formatters, (void)factory, (void)kind;
}
