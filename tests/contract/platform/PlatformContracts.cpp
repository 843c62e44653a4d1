#include "contract/platform/PlatformContracts.h"

#include "util/Containers.h"

using namespace corvane;
using namespace corvane::contract;

namespace corvane::contract {
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AuthorizationContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(PropertyListContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DynamicStoreContract);
} // namespace corvane::contract

namespace {

const platform::AuthorizationRights bothRights{{"system.services.directory.configure", "", 0},
                                               {"system.preferences", "", 0}};
constexpr std::uint32_t quietly =
    platform::AuthorizationFlag::extendRights | platform::AuthorizationFlag::preAuthorize;
constexpr std::uint32_t asking = quietly | platform::AuthorizationFlag::interactionAllowed;
constexpr const char* policyChanged = "com.velmora.DirectoryService.NotifyTypeStandard:SearchPolicyChanged";

} // namespace

TEST_P(AuthorizationContract, newAuthorization_holdsNothing) {
    const auto world = GetParam().make();
    const auto authorization = world->service().createAuthorization();
    ASSERT_NE(authorization, nullptr);
    EXPECT_NE(authorization->authorizationRef(), 0U);
    EXPECT_FALSE(authorization->obtainRights(bothRights, quietly));
}

TEST_P(AuthorizationContract, rightsObtained_areHeldQuietlyFromThenOn) {
    const auto world = GetParam().make();
    const auto authorization = world->service().createAuthorization();
    EXPECT_TRUE(authorization->obtainRights(bothRights, asking));
    EXPECT_EQ(authorization->refusalReason(), "");
    EXPECT_TRUE(authorization->obtainRights(bothRights, quietly));
}

TEST_P(AuthorizationContract, rightsDestroyed_areGone) {
    const auto world = GetParam().make();
    const auto authorization = world->service().createAuthorization();
    EXPECT_TRUE(authorization->obtainRights(bothRights, asking));
    authorization->destroyRights();
    EXPECT_FALSE(authorization->obtainRights(bothRights, quietly));
}

TEST_P(AuthorizationContract, formMadeBeforeTheRightsWereDestroyed_isNotMadeAgain) {
    const auto world = GetParam().make();
    const auto authorization = world->service().createAuthorization();
    util::AuthorizationExternalForm before, after;
    EXPECT_TRUE(authorization->obtainRights(bothRights, asking));
    EXPECT_EQ(world->service().makeExternalForm(authorization->authorizationRef(), before), 0);
    authorization->destroyRights();
    EXPECT_TRUE(authorization->obtainRights(bothRights, asking));
    EXPECT_EQ(world->service().makeExternalForm(authorization->authorizationRef(), after), 0);
    EXPECT_NE(after.bytes, before.bytes);
}

TEST_P(AuthorizationContract, authorizations_shareNothing) {
    const auto world = GetParam().make();
    const auto one = world->service().createAuthorization();
    const auto other = world->service().createAuthorization();
    EXPECT_NE(one->authorizationRef(), other->authorizationRef());
    EXPECT_TRUE(one->obtainRights(bothRights, asking));
    EXPECT_FALSE(other->obtainRights(bothRights, quietly));
}

TEST_P(AuthorizationContract, externalForm_isTheSameUntilTheRightsAreDestroyed) {
    const auto world = GetParam().make();
    const auto authorization = world->service().createAuthorization();
    EXPECT_TRUE(authorization->obtainRights(bothRights, asking));
    util::AuthorizationExternalForm first, second, third;
    EXPECT_EQ(world->service().makeExternalForm(authorization->authorizationRef(), first), 0);
    EXPECT_EQ(world->service().makeExternalForm(authorization->authorizationRef(), second), 0);
    EXPECT_EQ(first.bytes, second.bytes);
    EXPECT_NE(first.bytes, util::AuthorizationExternalForm().bytes);
    authorization->destroyRights();
    if (world->service().makeExternalForm(authorization->authorizationRef(), third) == 0) {
        EXPECT_NE(third.bytes, first.bytes);
    }
}

TEST_P(AuthorizationContract, externalFormOfNothing_failsAndLeavesTheFormAlone) {
    const auto world = GetParam().make();
    util::AuthorizationExternalForm form;
    form.bytes.fill(7);
    EXPECT_NE(world->service().makeExternalForm(0, form), 0);
    EXPECT_EQ(form.bytes[31], 7);
}

TEST_P(PropertyListContract, valueWritten_isReadBackFromBothForms) {
    const auto codec = GetParam().make();
    const util::Value value =
        util::Dictionary{{"list", util::Array{"a", 1, true, 0.5}}, {"bytes", util::Data({1, 2})}};
    for (const auto& bytes : {codec->xml(value), codec->binary(value)}) {
        ASSERT_TRUE(bytes.has_value());
        EXPECT_EQ(codec->parse(*bytes, nullptr), value);
    }
}

TEST_P(PropertyListContract, valueRead_isImmutable) {
    const auto codec = GetParam().make();
    const auto value = codec->parse(*codec->binary(util::Array{util::Array{"a"}}), nullptr).as<util::Array>();
    EXPECT_FALSE(value.isMutable());
    EXPECT_FALSE(value.at(0).isMutable());
}

TEST_P(PropertyListContract, valueWritten_isWhatItWasAtThatTime) {
    const auto codec = GetParam().make();
    auto inner = util::Array::makeMutable({"a"});
    const auto bytes = codec->binary(util::Array{inner});
    inner.append("b");
    const auto read = codec->parse(*bytes, nullptr).as<util::Array>();
    EXPECT_EQ(read.at(0), util::Value(util::Array{"a"}));
    EXPECT_FALSE(read.at(0).isMutable());
}

TEST_P(PropertyListContract, textAndNumberOfTheSameLook_areToldApart) {
    const auto codec = GetParam().make();
    const auto number = codec->binary(util::Array{1});
    const auto text = codec->binary(util::Array{"1"});
    EXPECT_EQ(codec->parse(*number, nullptr), util::Value(util::Array{1}));
    EXPECT_EQ(codec->parse(*text, nullptr), util::Value(util::Array{"1"}));
}

TEST_P(PropertyListContract, valueWithoutForm_givesNone) {
    const auto codec = GetParam().make();
    EXPECT_FALSE(codec->xml({}).has_value());
    EXPECT_FALSE(codec->binary(util::Array{util::Set{"a"}}).has_value());
}

TEST_P(PropertyListContract, bytesThatAreNone_giveNullAndAReason) {
    const auto codec = GetParam().make();
    std::string reason;
    EXPECT_TRUE(codec->parse(util::bytesFromText("no property list"), &reason).isNull());
    EXPECT_FALSE(reason.empty());
    EXPECT_TRUE(codec->parse({}, nullptr).isNull()) << "a reason need not be asked for";
}

TEST_P(DynamicStoreContract, watchedKey_isDeliveredByTheRunLoopAndNotBefore) {
    const auto world = GetParam().make();
    int calls = 0;
    auto session = world->store().create("com.velmora.dsSearchPolicyListener", [&] { ++calls; });
    ASSERT_NE(session, nullptr);
    EXPECT_TRUE(session->setNotificationKeys({policyChanged}));
    session->addToRunLoop();
    session.reset(); // the run loop keeps it
    world->changeSearchPolicy();
    EXPECT_EQ(calls, 0);
    world->runLoop();
    EXPECT_GE(calls, 1);
}

TEST_P(DynamicStoreContract, otherKeys_areNotDelivered) {
    const auto world = GetParam().make();
    int calls = 0;
    const auto session = world->store().create("listener", [&] { ++calls; });
    EXPECT_TRUE(session->setNotificationKeys({"some.other.key"}));
    session->addToRunLoop();
    world->changeSearchPolicy();
    world->runLoop();
    EXPECT_EQ(calls, 0);
}

TEST_P(DynamicStoreContract, keyAmongOthers_isDelivered) {
    const auto world = GetParam().make();
    int calls = 0;
    const auto session = world->store().create("listener", [&] { ++calls; });
    EXPECT_TRUE(session->setNotificationKeys({"some.other.key", policyChanged}));
    session->addToRunLoop();
    world->changeSearchPolicy();
    world->runLoop();
    EXPECT_GE(calls, 1);
}

TEST_P(DynamicStoreContract, keysSetAgain_replaceTheFirstOnes) {
    const auto world = GetParam().make();
    int calls = 0;
    const auto session = world->store().create("listener", [&] { ++calls; });
    EXPECT_TRUE(session->setNotificationKeys({policyChanged}));
    EXPECT_TRUE(session->setNotificationKeys({"some.other.key"}));
    session->addToRunLoop();
    world->changeSearchPolicy();
    world->runLoop();
    EXPECT_EQ(calls, 0);
}

TEST_P(DynamicStoreContract, sessionOutsideTheRunLoop_hearsNothing) {
    const auto world = GetParam().make();
    int calls = 0;
    const auto session = world->store().create("listener", [&] { ++calls; });
    EXPECT_TRUE(session->setNotificationKeys({policyChanged}));
    world->changeSearchPolicy();
    world->runLoop();
    EXPECT_EQ(calls, 0);
}
