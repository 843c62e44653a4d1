#include "haldend/records/FetchedRecord.h"

#include <gtest/gtest.h>

using namespace corvane;
using namespace corvane::haldend;
namespace attribute = halden::attribute;

namespace {

using Names = std::vector<std::string>;

const std::string name(attribute::recordName), members(attribute::groupMembership), mail(attribute::mail);

} // namespace

TEST(FetchedRecord, values_keepTheirOrderWhateverOrderAttributesCameIn) {
    RecordPacker packer(halden::recordType::groups, {members, name, mail});
    packer.add(*packer.numberOf(members), "bertha");
    packer.add(*packer.numberOf(name), "makers");
    packer.add(*packer.numberOf(members), "");
    packer.add(*packer.numberOf(members), std::string("a\0b", 3));
    packer.add(*packer.numberOf(name), "builders");
    const auto record = packer.take();
    EXPECT_EQ(record->recordType(), halden::recordType::groups);
    EXPECT_EQ(record->recordName(), "makers") << "the first of its names";
    EXPECT_EQ(record->valuesForAttribute(name, nullptr).texts(), (Names{"makers", "builders"}));
    EXPECT_EQ(record->valuesForAttribute(members, nullptr).texts(),
              (Names{"bertha", "", std::string("a\0b", 3)}));
    EXPECT_EQ(record->attributes().count(), 2U) << "what has no value isn't there";
}

TEST(FetchedRecord, attributeWithoutAValue_isAnErrorThatNamesRecordAndAttribute) {
    RecordPacker packer(halden::recordType::users, {name, mail});
    packer.add(*packer.numberOf(name), "bertha");
    const auto record = packer.take();
    halden::Error error;
    EXPECT_TRUE(record->valuesForAttribute(mail, &error).isNull());
    EXPECT_EQ(error.code, halden::ErrorCode::attributeUnknown);
    EXPECT_NE((error.description + error.reason).find("bertha"), std::string::npos);
    EXPECT_NE((error.description + error.reason).find(mail), std::string::npos);
}

TEST(FetchedRecord, recordWithoutAName_saysNone) {
    RecordPacker packer(halden::recordType::users, {mail});
    packer.add(*packer.numberOf(mail), "bertha@example.com");
    EXPECT_FALSE(packer.hasName());
    EXPECT_EQ(packer.take()->recordName(), "");
    EXPECT_EQ(packer.take()->recordName(), "") << "nor does one without anything";
}

TEST(RecordPacker, nextRecord_hasNothingOfTheLastOne) {
    RecordPacker packer(halden::recordType::users, {name, mail});
    packer.add(*packer.numberOf(name), "bertha");
    packer.add(*packer.numberOf(mail), "bertha@example.com");
    const auto first = packer.take();
    packer.add(*packer.numberOf(mail), "nobody@example.com");
    packer.drop();
    packer.add(*packer.numberOf(name), "alice");
    const auto second = packer.take();
    EXPECT_EQ(first->recordName(), "bertha");
    EXPECT_EQ(second->attributes().keys(), Names{name});
    EXPECT_EQ(packer.numberOf("another"), std::nullopt);
}
