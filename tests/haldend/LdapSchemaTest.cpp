#include "haldend/ldap/LdapSchema.h"

#include <gtest/gtest.h>

using namespace corvane::haldend;

namespace {

std::string nameIn(const std::string& schema, const char* option) {
    return ldapName({"a", {{"ldap_schema", schema}}}, option);
}

} // namespace

TEST(LdapSchema, withoutOne_isTheOldest) {
    EXPECT_EQ(ldapName({"a", {}}, "ldap_user_object_class"), "posixAccount");
    EXPECT_EQ(ldapName({"a", {}}, "ldap_group_member"), "memberUid");
}

TEST(LdapSchema, eachHasItsOwnNames) {
    EXPECT_EQ(nameIn("rfc2307", "ldap_group_member"), "memberUid");
    EXPECT_EQ(nameIn("rfc2307bis", "ldap_group_member"), "member");
    EXPECT_EQ(nameIn("rfc2307bis", "ldap_user_name"), "uid");
    EXPECT_EQ(nameIn("ad", "ldap_user_object_class"), "user");
    EXPECT_EQ(nameIn("ad", "ldap_user_name"), "sAMAccountName");
    EXPECT_EQ(nameIn("ad", "ldap_user_home_directory"), "unixHomeDirectory");
    EXPECT_EQ(nameIn("ad", "ldap_group_object_class"), "group");
}

TEST(LdapSchema, optionOfTheSection_isMoreThanTheSchema) {
    EXPECT_EQ(ldapName({"a", {{"ldap_schema", "ad"}, {"ldap_user_name", "uid"}}}, "ldap_user_name"), "uid");
    EXPECT_EQ(ldapName({"a", {}}, "ldap_something_else"), "");
}
