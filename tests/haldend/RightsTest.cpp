#include "haldend/engine/Rights.h"

#include <gtest/gtest.h>

#include <set>

using namespace corvane;
using haldend::configureRight;
using haldend::Rights;

namespace {
util::Bytes formOf(Rights& rights, Rights::Ref ref) {
    util::AuthorizationExternalForm form;
    EXPECT_TRUE(rights.externalForm(ref, form));
    return {form.bytes.begin(), form.bytes.end()};
}
const Rights::Names configure{std::string(configureRight)};
} // namespace

TEST(Rights, token_permitsWhatItsAuthorizationHolds) {
    Rights rights;
    const auto ref = rights.open();
    const auto form = formOf(rights, ref);
    EXPECT_FALSE(rights.permits(form, configureRight));
    rights.grant(ref, configure);
    EXPECT_TRUE(rights.permits(form, configureRight));
    EXPECT_FALSE(rights.permits(form, "another.right"));
}

TEST(Rights, tokens_differ) {
    Rights rights;
    std::set<util::Bytes> forms;
    for (int i = 0; i < 50; ++i)
        forms.insert(formOf(rights, rights.open()));
    EXPECT_EQ(forms.size(), 50U);
}

TEST(Rights, destroyedOrClosed_takesTheTokenAlong) {
    Rights rights;
    const auto one = rights.open();
    const auto other = rights.open();
    rights.grant(one, configure);
    rights.grant(other, configure);
    const auto first = formOf(rights, one);
    const auto second = formOf(rights, other);
    rights.destroy(one);
    EXPECT_FALSE(rights.permits(first, configureRight));
    rights.grant(one, configure);
    EXPECT_FALSE(rights.permits(first, configureRight)) << "an old form stays worthless";
    EXPECT_NE(formOf(rights, one), first);
    EXPECT_TRUE(rights.permits(second, configureRight));
    rights.close(other);
    EXPECT_FALSE(rights.permits(second, configureRight));
}

TEST(Rights, zeroForm_permitsNothingEvenBeforeATokenIsMinted) {
    Rights rights;
    rights.grant(rights.open(), configure);
    EXPECT_FALSE(rights.permits(util::Bytes(32), configureRight));
    EXPECT_FALSE(rights.permits(util::Bytes(), configureRight));
}

TEST(Rights, unknownReference_isHarmless) {
    Rights rights;
    util::AuthorizationExternalForm form;
    EXPECT_FALSE(rights.externalForm(7, form));
    rights.grant(7, configure);
    rights.destroy(7);
    rights.close(7);
    EXPECT_FALSE(rights.holds(7, configure));
}
