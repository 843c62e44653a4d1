#include <gtest/gtest.h>

#include <limits>

#include "plist/PropertyListCodec.h"
#include "util/Containers.h"

using namespace corvane::util;
using corvane::plist::PropertyListCodec;

namespace {

std::string document(const std::string& body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + body + "</plist>\n";
}

std::string xmlOf(const Value& value) {
    const auto bytes = PropertyListCodec().xml(value);
    return bytes ? textFromBytes(*bytes) : "(none)";
}

Value parsed(const std::string& text) { return PropertyListCodec().parse(bytesFromText(text), nullptr); }

std::string refusal(const std::string& text) {
    std::string reason = "(none)";
    EXPECT_TRUE(PropertyListCodec().parse(bytesFromText(text), &reason).isNull()) << text;
    return reason;
}

} // namespace

TEST(PropertyListXml, everyKind_isWrittenAsThisDocument) {
    EXPECT_EQ(xmlOf(Dictionary(ValueMap{})), document("<dict/>\n"));
    EXPECT_EQ(xmlOf(Array(ValueList{})), document("<array/>\n"));
    EXPECT_EQ(xmlOf("a<b&c>\r"), document("<string>a&lt;b&amp;c&gt;&#13;</string>\n"));
    EXPECT_EQ(xmlOf(true), document("<true/>\n"));
    EXPECT_EQ(xmlOf(-7), document("<integer>-7</integer>\n"));
    EXPECT_EQ(xmlOf(std::numeric_limits<std::uint64_t>::max()),
              document("<integer>18446744073709551615</integer>\n"));
    EXPECT_EQ(xmlOf(0.5), document("<real>0.5</real>\n"));
    EXPECT_EQ(xmlOf(Date(0)), document("<date>1970-01-01T00:00:00Z</date>\n"));
    EXPECT_EQ(xmlOf(Data({1, 2, 3, 4})), document("<data>AQIDBA==</data>\n"));
    EXPECT_EQ(
        xmlOf(Dictionary{{"key", Array{"one"}}}),
        document("<dict>\n\t<key>key</key>\n\t<array>\n\t\t<string>one</string>\n\t</array>\n</dict>\n"));
}

TEST(PropertyListXml, valueWithoutPropertyListForm_isNotWritten) {
    EXPECT_EQ(xmlOf({}), "(none)");
    EXPECT_EQ(xmlOf(Set{"a"}), "(none)");
    EXPECT_EQ(xmlOf(Array{Set{"a"}}), "(none)");
    EXPECT_EQ(xmlOf(Value(std::make_shared<OpaqueObject>())), "(none)");
    EXPECT_EQ(xmlOf(std::string("a\x01")), "(none)");
    EXPECT_EQ(xmlOf(std::string("\xff")), "(none)");
    EXPECT_EQ(xmlOf(Date(1e15)), "(none)");
}

TEST(PropertyListXml, containerThatHoldsItself_isNotWritten) {
    auto loop = Array::makeMutable();
    loop.append(loop);
    EXPECT_FALSE(PropertyListCodec().xml(loop));
    EXPECT_FALSE(PropertyListCodec().binary(loop));
    loop.setElements({});
}

TEST(PropertyListXml, documentType_mayStandOrBeMissing) {
    const std::string type = "<!DOCTYPE plist SYSTEM \"file:///nowhere/plist.dtd\">";
    EXPECT_EQ(parsed("<?xml version=\"1.0\"?>" + type + "<plist version=\"1.0\"><string>x</string></plist>"),
              Value("x"));
    EXPECT_EQ(parsed("<plist><string>x</string></plist>"), Value("x"));
}

TEST(PropertyListXml, looseWriting_isRead) {
    EXPECT_EQ(parsed("<plist><integer> +5 </integer></plist>"), Value(5));
    EXPECT_EQ(parsed("<plist><real>1e3</real></plist>"), Value(1000.0));
    EXPECT_EQ(parsed("<plist><data>\n AQ ID\n\tBA== </data></plist>"), Data({1, 2, 3, 4}));
    EXPECT_EQ(parsed("<plist><string><![CDATA[<a>]]></string></plist>"), Value("<a>"));
    EXPECT_EQ(parsed("<plist><!-- note --><array><true/><false/></array></plist>"), (Array{true, false}));
    EXPECT_EQ(parsed("<plist><date>2024-02-29T12:00:01Z</date></plist>"), Date(1709208001));
    EXPECT_EQ(parsed("<plist><string></string></plist>"), Value(""));
}

TEST(PropertyListXml, valueRead_isImmutable) { EXPECT_FALSE(parsed(document("<array/>")).isMutable()); }

TEST(PropertyListXml, entities_areRefused) {
    EXPECT_EQ(refusal("<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>&a;</string></plist>"),
              "line 1, column 29: entity declarations are not allowed");
    EXPECT_NE(refusal("<!DOCTYPE plist [<!ENTITY a SYSTEM "
                      "\"file:///etc/hostname\">]><plist><string>&a;</string></plist>")
                  .find("entity declarations"),
              std::string::npos);
    EXPECT_NE(
        refusal("<!DOCTYPE plist SYSTEM \"x.dtd\"><plist><string>&a;</string></plist>").find("entity \"a\""),
        std::string::npos);
}

TEST(PropertyListXml, malformedDocument_isRefusedWithPlaceAndReason) {
    const std::pair<std::string, std::string> table[] = {
        {"", "nothing to read"},
        {"hello", "line 1, column 1: "},
        {"<plist>", "no element found"},
        {"<plist></plist>", "the plist element is empty"},
        {"<html/>", "the document is a <html>"},
        {"<plist><true/><true/></plist>", "a second value"},
        {"<plist><dict><true/></dict></plist>", "without a key"},
        {"<plist><dict><key>a</key></dict></plist>", "the key \"a\" has no value"},
        {"<plist><dict><key>a</key><key>b</key></dict></plist>", "the key \"a\" has no value"},
        {"<plist><dict><key>a</key><true/><key>a</key><true/></dict></plist>", "appears twice"},
        {"<plist><array><key>a</key></array></plist>", "<key> outside a dict"},
        {"<plist><string><true/></string></plist>", "<true> inside <string>"},
        {"<plist><set/></plist>", "<set> isn't an element"},
        {"<plist>text<true/></plist>", "text between the elements"},
        {"<plist><integer>12x</integer></plist>", "isn't an integer"},
        {"<plist><integer>18446744073709551616</integer></plist>", "isn't an integer of 64 bits"},
        {"<plist><integer/></plist>", "isn't an integer"},
        {"<plist><real>one</real></plist>", "isn't a number"},
        {"<plist><date>2026-02-30T00:00:00Z</date></plist>", "isn't a date"},
        {"<plist><date>yesterday</date></plist>", "isn't a date"},
        {"<plist><data>A===</data></plist>", "base 64"},
        {"<plist><data>AQ=</data></plist>", "base 64"},
        {"<plist><data>A*==</data></plist>", "base 64"},
    };
    for (const auto& [text, part] : table)
        EXPECT_NE(refusal(text).find(part), std::string::npos) << text << refusal(text);
}

TEST(PropertyListXml, nestingBeyondTheLimit_isRefused) {
    const auto nested = [](int depth) {
        std::string open, close;
        for (int i = 0; i < depth; ++i)
            open += "<array>", close += "</array>";
        return "<plist>" + open + close + "</plist>";
    };
    EXPECT_FALSE(parsed(nested(64)).isNull());
    EXPECT_NE(refusal(nested(65)).find("nested more than 64 deep"), std::string::npos);
}

TEST(PropertyListXml, sizeBeyondTheLimit_isRefused) {
    const std::string huge = "<plist><string>" + std::string(64U * 1024U * 1024U, 'x') + "</string></plist>";
    EXPECT_NE(refusal(huge).find("64 MiB"), std::string::npos);
}

TEST(PropertyListXml, valueWithoutThatForm_isRefusedWithItsOwnReason) {
    const auto reasonOf = [](const Value& value) {
        std::string reason;
        EXPECT_FALSE(PropertyListCodec().xml(value, &reason));
        return reason;
    };
    EXPECT_EQ(reasonOf(Value()), "null has no property-list form");
    EXPECT_EQ(reasonOf(Set{"a"}), "a set or an opaque object has no property-list form");
    EXPECT_EQ(reasonOf(Array{"\x01"}), "a text holds a character that XML can't");
    EXPECT_EQ(reasonOf(Date(1e15)), "a date lies outside the years 1 to 9999");
}
