#include "directory/CustomCalls.h"

#include <gtest/gtest.h>

#include "fakes/FakeDirectory.h"
#include "fakes/FakePropertyListCodec.h"

using namespace corvane;
using util::Bytes;

namespace {

struct CustomCalls : testing::Test {
    CustomCalls() { form.bytes.fill(0xA5); }
    [[nodiscard]] const Bytes& sent() const { return state->calls.at(0).request; }
    [[nodiscard]] Bytes payload() const { return {sent().begin() + 32, sent().end()}; }

    fakes::Journal journal;
    std::shared_ptr<fakes::FakeNodeState> state = std::make_shared<fakes::FakeNodeState>();
    fakes::FakeNode node{journal, state};
    util::AuthorizationExternalForm form;
    fakes::FakePropertyListCodec codec;
};

} // namespace

TEST_F(CustomCalls, withoutPayload_sendsExactly32Bytes) {
    (void)directory::customCall(node, 111, form, nullptr);
    EXPECT_EQ(sent(), Bytes(32, 0xA5));
    EXPECT_EQ(state->calls.at(0).code, 111);
}

TEST_F(CustomCalls, withData_sendsTheFormThenTheData) {
    (void)directory::customCall(node, 7, Bytes{1, 2, 3}, form, nullptr);
    EXPECT_EQ(sent().size(), 35U);
    EXPECT_EQ(payload(), (Bytes{1, 2, 3}));
}

TEST_F(CustomCalls, noDataAndEmptyData_areTheSame) {
    (void)directory::customCall(node, 7, std::nullopt, form, nullptr);
    (void)directory::customCall(node, 7, Bytes(), form, nullptr);
    EXPECT_EQ(state->calls.at(0).request, state->calls.at(1).request);
}

TEST_F(CustomCalls, replyAndError_areTheBareCalls) {
    state->onCall = [](const auto&, auto*) { return Bytes{9}; };
    halden::Error error;
    EXPECT_EQ(directory::customCall(node, 7, form, &error), Bytes{9});
    EXPECT_FALSE(error);
    state->nextError = {5, "no", "", ""};
    EXPECT_EQ(directory::customCall(node, 7, form, &error), std::nullopt);
    EXPECT_EQ(error.code, 5);
    EXPECT_EQ(state->calls.size(), 2U); // never tried again
}

TEST_F(CustomCalls, propertyList_isSentAsXmlAfterTheForm) {
    const util::Dictionary empty((util::ValueMap()));
    (void)directory::customCallSendPropertyList(node, 7, empty, codec, form, nullptr);
    EXPECT_EQ(payload(), codec.xml(empty));
}

TEST_F(CustomCalls, propertyListWithoutThatForm_isAnErrorAndSendsNothing) {
    halden::Error error;
    EXPECT_FALSE(directory::customCallSendPropertyList(node, 7, util::Set{"a"}, codec, form, &error));
    EXPECT_EQ(error.code, halden::ErrorCode::parameter);
    EXPECT_EQ(error.reason, "The cause: something in it has no such form.");
    EXPECT_TRUE(state->calls.empty());
}

TEST_F(CustomCalls, items_areSentAfterTheirLengths) {
    const util::Array items{"ab", util::Data(Bytes{1, 2, 3})};
    (void)directory::customCallSendItems(node, 7, items, nullptr);
    EXPECT_EQ(sent(), (Bytes{2, 0, 0, 0, 'a', 'b', 3, 0, 0, 0, 1, 2, 3}));
}

TEST_F(CustomCalls, itemsOfOtherKinds_contributeNothing) {
    const util::Array items{42, "a", util::Array{"b"}, true};
    (void)directory::customCallSendItems(node, 7, items, nullptr);
    EXPECT_EQ(sent(), (Bytes{1, 0, 0, 0, 'a'}));
}

TEST_F(CustomCalls, emptyItem_contributesItsLengthOnly_emptyListNothing) {
    (void)directory::customCallSendItems(node, 7, util::Array{""}, nullptr);
    (void)directory::customCallSendItems(node, 7, util::Array(util::ValueList()), nullptr);
    EXPECT_EQ(state->calls.at(0).request, (Bytes{0, 0, 0, 0}));
    EXPECT_TRUE(state->calls.at(1).request.empty());
}

TEST_F(CustomCalls, textItems_areUtf8WithoutTerminator) {
    (void)directory::customCallSendItems(node, 7, util::Array{"é"}, nullptr);
    EXPECT_EQ(sent(), (Bytes{2, 0, 0, 0, 0xC3, 0xA9}));
}
