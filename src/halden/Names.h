#pragma once

#include <cstdint>
#include <string_view>

namespace corvane::halden {

/// Nodes that every directory service has, opened by type instead of by name.
enum class NodeType : std::uint32_t {
    localNodes = 0x2200,
    authenticationSearchNode = 0x2201,
    configNode = 0x2202,
    contactsSearchNode = 0x2204,
};

namespace recordType {
inline constexpr std::string_view users = "dsRecTypeStandard:Users";
inline constexpr std::string_view groups = "dsRecTypeStandard:Groups";
inline constexpr std::string_view plugins = "dsRecTypeStandard:Plugins";
inline constexpr std::string_view recordTypes = "dsRecTypeStandard:RecordTypes";
inline constexpr std::string_view attributeTypes = "dsRecTypeStandard:AttributeTypes";
} // namespace recordType

/// A record name that matches every record.
inline constexpr std::string_view allRecords = "dsRecordsAll";

namespace attribute {
inline constexpr std::string_view recordName = "dsAttrTypeStandard:RecordName";
inline constexpr std::string_view password = "dsAttrTypeStandard:Password";
inline constexpr std::string_view authenticationAuthority = "dsAttrTypeStandard:AuthenticationAuthority";
inline constexpr std::string_view realName = "dsAttrTypeStandard:RealName";
inline constexpr std::string_view uniqueID = "dsAttrTypeStandard:UniqueID";
inline constexpr std::string_view primaryGroupID = "dsAttrTypeStandard:PrimaryGroupID";
inline constexpr std::string_view homeDirectory = "dsAttrTypeStandard:HomeDirectory";
inline constexpr std::string_view userShell = "dsAttrTypeStandard:UserShell";
inline constexpr std::string_view groupMembership = "dsAttrTypeStandard:GroupMembership";
inline constexpr std::string_view mail = "dsAttrTypeStandard:Mail";
inline constexpr std::string_view phone = "dsAttrTypeStandard:PhoneNumber";
inline constexpr std::string_view functionalState = "dsAttrTypeStandard:FunctionalState";
inline constexpr std::string_view version = "dsAttrTypeStandard:Version";
inline constexpr std::string_view configAvailable = "dsAttrTypeStandard:ConfigAvailable";
inline constexpr std::string_view configFile = "dsAttrTypeStandard:ConfigFile";
inline constexpr std::string_view operatingSystemVersion = "dsAttrTypeStandard:OperatingSystemVersion";
inline constexpr std::string_view searchPolicy = "dsAttrTypeStandard:SearchPolicy";
inline constexpr std::string_view automaticSearchPath = "dsAttrTypeStandard:AutomaticSearchPath";
inline constexpr std::string_view localOnlySearchPath = "dsAttrTypeStandard:LocalOnlySearchPath";
inline constexpr std::string_view customSearchPath = "dsAttrTypeStandard:CustomSearchPath";
/// Of a search node: what of the machine's configuration isn't used, and why; sentences for people.
inline constexpr std::string_view remarks = "dsAttrTypeNative:remarks";
inline constexpr std::string_view all = "dsAttributesAll";
} // namespace attribute

namespace authenticationType {
/// The single authentication item is a 32-byte authorization external form.
inline constexpr std::string_view authorizationExternalForm = "dsAuthTypeStandard:AuthorizationExternalForm";
} // namespace authenticationType

} // namespace corvane::halden
