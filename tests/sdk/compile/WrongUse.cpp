#include "sdk/Background.h"
#include "sdk/Form.h"

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
#elif defined(CASE_NULL_VALUE)
    (void)corvane::sdk::FormItem::text("server", "").value(nullptr);
#elif defined(CASE_DROPPED_FORM)
    corvane::sdk::Form(host, corvane::sdk::FormWindow("example", "Example"));
#elif defined(CASE_DROPPED_TIMER)
    corvane::sdk::Timer(host, 1, false, [] {});
#endif
}
