#include "sdk/Host.h"

// One mistake at a time, chosen by the build; without any the uses are in order.

void use(const corvane::sdk::Host& host, const corvane::sdk::Object& list) {
    const auto kept = host.data({});
    (void)kept.bytes();
    (void)list.at(0);
    (void)list["key"];
#if defined(CASE_INDEX)
    (void)list[0];
#elif defined(CASE_UNSIGNED)
    (void)list[list.count()];
#elif defined(CASE_NULL)
    (void)list[nullptr];
#elif defined(CASE_TEMPORARY)
    (void)host.data({}).bytes();
#elif defined(CASE_ELEMENT)
    (void)list.at(0).bytes();
#endif
}
