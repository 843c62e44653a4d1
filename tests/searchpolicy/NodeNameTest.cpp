#include "searchpolicy/NodeName.h"

#include <gtest/gtest.h>

#include "util/Exceptions.h"

using namespace corvane;

TEST(NodeName, connector_isBetweenTheFirstTwoSlashes) {
    EXPECT_EQ(searchpolicy::connectorOfNode("/LDAP/ldap.example.com/people"), "LDAP");
    EXPECT_EQ(searchpolicy::connectorOfNode("/Search"), "Search");
    EXPECT_THROW((void)searchpolicy::connectorOfNode("nothing"), util::RangeException);
}
