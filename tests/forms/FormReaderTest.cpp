#include "forms/FormReader.h"

#include <gtest/gtest.h>

using namespace corvane;
using util::Array;
using util::Dictionary;

namespace {

Dictionary windowWith(const util::Value& items) {
    return {{"name", "example"}, {"title", "Example"}, {"items", items}};
}

std::string refusalOf(const Dictionary& description) {
    try {
        (void)forms::readForm(description);
        return "";
    } catch (const forms::FormError& error) {
        return error.what();
    }
}

} // namespace

TEST(FormReader, wholeWindow_isReadAsItIsDescribed) {
    const auto form = forms::readForm(
        {{"name", "example"},
         {"title", "Example"},
         {"width", 400},
         {"items", Array{Dictionary{{"kind", "number"},
                                    {"name", "port"},
                                    {"label", "&Port:"},
                                    {"minimum", 1},
                                    {"maximum", 65535},
                                    {"value", 389},
                                    {"required", true}}}},
         {"buttons", Array{Dictionary{{"name", "ok"}, {"title", "OK"}, {"role", "accept"}}}}});
    EXPECT_EQ(form.title, "Example");
    EXPECT_EQ(form.width, 400);
    ASSERT_EQ(form.items.size(), 1U);
    EXPECT_EQ(form.items[0].kind, forms::Item::Kind::number);
    EXPECT_EQ(form.items[0].maximum, 65535);
    EXPECT_EQ(form.items[0].value, util::Value(389));
    EXPECT_TRUE(form.items[0].isRequired);
    ASSERT_EQ(form.buttons.size(), 1U);
    EXPECT_EQ(form.buttons[0].role, forms::Button::Role::accept);
}

TEST(FormReader, selectionOfAList_isReadAfterItsRowsWhateverTheOrderOfKeys) {
    const auto rows = Array{Dictionary{{"title", "a"}}, Dictionary{{"title", "b"}}};
    const auto form = forms::readForm(
        windowWith(Array{Dictionary{{"kind", "list"}, {"rows", rows}, {"value", Array{1, 0, 1}}}}));
    EXPECT_EQ(form.items[0].value, util::Value(Array{0, 1})) << "rising, each once";
    EXPECT_NE(refusalOf(windowWith(Array{Dictionary{{"kind", "list"}, {"value", Array{0}}}})), "");
}

TEST(FormReader, mistakes_areNamedByItemAndKey) {
    const auto item = [](const std::string& key, const util::Value& value) {
        return windowWith(Array{Dictionary{{"kind", "number"}, {"name", "port"}, {key, value}}});
    };
    EXPECT_EQ(refusalOf(item("minimun", 1)), "\"items\": item \"port\": there is no property \"minimun\"");
    EXPECT_EQ(refusalOf(item("minimum", "one")),
              "\"items\": item \"port\": \"minimum\": it isn't a whole number");
    EXPECT_EQ(refusalOf(item("value", 1.5)), "\"items\": item \"port\": \"value\": it isn't a whole number");
    EXPECT_NE(refusalOf(windowWith(Array{Dictionary{{"kind", "nummer"}}})).find("\"nummer\" is none of"),
              std::string::npos);
    EXPECT_EQ(refusalOf(windowWith(Array{Dictionary{{"name", "port"}}})).substr(0, 31),
              "\"items\": item \"port\": \"kind\": \"");
    EXPECT_EQ(refusalOf({{"name", "example"}}), "it has no \"title\"");
}

TEST(FormReader, nameThatAppearsTwice_isRefusedWhereverItIs) {
    const auto inGroup = Dictionary{
        {"kind", "group"}, {"name", "more"}, {"items", Array{Dictionary{{"kind", "text"}, {"name", "a"}}}}};
    EXPECT_EQ(refusalOf(windowWith(Array{Dictionary{{"kind", "text"}, {"name", "a"}}, inGroup})),
              "the name \"a\" appears twice");
    auto withButton = util::Dictionary::makeMutable(
        {{"title", "Example"}, {"items", Array{Dictionary{{"kind", "text"}, {"name", "ok"}}}}});
    withButton.set("buttons", Array{Dictionary{{"name", "ok"}}});
    EXPECT_EQ(refusalOf(withButton), "the name \"ok\" appears twice");
}

TEST(FormReader, tooMuch_isRefused) {
    auto many = Array::makeMutable();
    for (std::size_t i = 0; i <= forms::mostItems; ++i)
        many.append(Dictionary{{"kind", "paragraph"}});
    EXPECT_NE(refusalOf(windowWith(many)), "");
    const std::string longText(forms::longestText + 1, 'x');
    EXPECT_NE(refusalOf(windowWith(Array{Dictionary{{"kind", "paragraph"}, {"text", longText}}})), "");
}

TEST(FormReader, groupInAGroup_isRefused) {
    const auto inner = Dictionary{{"kind", "group"}, {"name", "inner"}};
    const auto outer = Dictionary{{"kind", "group"}, {"name", "outer"}, {"items", Array{inner}}};
    EXPECT_NE(refusalOf(windowWith(Array{outer})).find("a group can't hold another"), std::string::npos);
}

TEST(FormReader, refusedProperty_leavesTheItemAsItWas) {
    forms::Item item;
    item.kind = forms::Item::Kind::choice;
    forms::setProperty(item, "choices", Array{Dictionary{{"value", "a"}, {"title", "A"}}});
    EXPECT_THROW(forms::setProperty(item, "choices", Array{Dictionary{{"valeu", "b"}}}), forms::FormError);
    ASSERT_EQ(item.choices.size(), 1U);
    EXPECT_EQ(item.choices[0].value, "a");
    EXPECT_THROW(forms::setProperty(item, "kind", "text"), forms::FormError);
}

TEST(FormReader, password_isKeptAsDataAlone) {
    const auto form =
        forms::readForm(windowWith(Array{Dictionary{{"kind", "password"}, {"value", "geheim"}}}));
    EXPECT_EQ(util::textFromBytes(form.items[0].value.as<util::Data>().bytes()), "geheim");
}

TEST(FormReader, keyOfAnotherKindOfItem_isRefusedInsteadOfIgnored) {
    const auto list = Dictionary{{"kind", "text"}, {"name", "a"}, {"rows", Array(util::ValueList())}};
    EXPECT_EQ(refusalOf(windowWith(Array{list})),
              "\"items\": item \"a\": the property \"rows\" belongs to the kind list, not to text");
    const auto titled = Dictionary{{"kind", "text"}, {"name", "a"}, {"title", "A"}};
    EXPECT_EQ(refusalOf(windowWith(Array{titled})), "\"items\": item \"a\": the property \"title\" belongs "
                                                    "to the kind check or group or button, not to text");
    forms::Item text;
    text.kind = forms::Item::Kind::text;
    EXPECT_THROW(forms::setProperty(text, "minimum", 1), forms::FormError);
}

TEST(FormReader, wordsAboutAList_areRefusedForOtherButtons) {
    const auto needy = Dictionary{{"name", "edit"}, {"title", "Edit"}, {"needs", "oneRow"}};
    EXPECT_EQ(refusalOf({{"title", "Example"}, {"buttons", Array{needy}}}),
              "button \"edit\": \"needs\" and \"key\" are for buttons beside a list");
    const auto beside = Dictionary{{"kind", "text"}, {"name", "a"}, {"button", needy}};
    EXPECT_NE(refusalOf(windowWith(Array{beside})), "");
    const auto list = Dictionary{{"kind", "list"}, {"name", "a"}, {"buttons", Array{needy}}};
    EXPECT_EQ(refusalOf(windowWith(Array{list})), "");
}

TEST(FormReader, whatContradictsItself_isRefused) {
    const auto entered = Dictionary{{"kind", "text"}, {"name", "a"}, {"enterPresses", "find"}};
    EXPECT_EQ(refusalOf(windowWith(Array{entered})),
              "item \"a\": \"enterPresses\": there is no button \"find\"");
    const auto bounds = Dictionary{{"kind", "number"}, {"name", "a"}, {"minimum", 2}, {"maximum", 1}};
    EXPECT_EQ(refusalOf(windowWith(Array{bounds})), "item \"a\": \"minimum\" is above \"maximum\"");
}

TEST(FormReader, fieldWithoutAValue_hasTheEmptyOneOfItsKind) {
    const auto valueOf = [](const std::string& kind) {
        return forms::readForm(windowWith(Array{Dictionary{{"kind", kind}, {"name", "a"}}})).items[0].value;
    };
    EXPECT_EQ(valueOf("text"), util::Value(""));
    EXPECT_EQ(valueOf("file"), util::Value(""));
    EXPECT_EQ(valueOf("check"), util::Value(false));
    EXPECT_TRUE(valueOf("number").isNull());
    EXPECT_FALSE(valueOf("password").as<util::Data>().isNull());
    EXPECT_FALSE(valueOf("list").as<Array>().isNull());
}

TEST(FormReader, choiceWithoutAValue_hasTheFirstOneAsItIsShown) {
    const Array choices{Dictionary{{"value", "a"}, {"title", "A"}},
                        Dictionary{{"value", "b"}, {"title", "B"}}};
    auto form = forms::readForm(
        windowWith(Array{Dictionary{{"kind", "choice"}, {"name", "mode"}, {"choices", choices}}}));
    auto& mode = form.items[0];
    EXPECT_EQ(mode.value, util::Value("a"));
    forms::setProperty(mode, "value", "b");
    forms::setProperty(mode, "value", {});
    EXPECT_EQ(mode.value, util::Value("a"));
    const Array withNone{Dictionary{{"value", "b"}, {"title", "B"}},
                         Dictionary{{"value", ""}, {"title", "None"}}};
    forms::setProperty(mode, "choices", withNone);
    forms::setProperty(mode, "value", "");
    EXPECT_EQ(mode.value, util::Value("")) << "one of the choices is nothing";
}

TEST(FormReader, null_setsTheDefaultOfAnyProperty) {
    auto form = forms::readForm(windowWith(Array{Dictionary{{"kind", "text"},
                                                            {"name", "a"},
                                                            {"visible", false},
                                                            {"required", true},
                                                            {"lines", 4},
                                                            {"characters", "ipv4Address"},
                                                            {"label", "A:"},
                                                            {"value", "x"}}}));
    auto& item = form.items[0];
    for (const auto* key : {"visible", "required", "lines", "characters", "label", "value"})
        forms::setProperty(item, key, {});
    EXPECT_TRUE(item.isVisible);
    EXPECT_FALSE(item.isRequired);
    EXPECT_EQ(item.lines, 1U);
    EXPECT_EQ(item.characters, forms::Item::Characters::any);
    EXPECT_EQ(item.label + item.value.as<util::String>().text(), "");
}
