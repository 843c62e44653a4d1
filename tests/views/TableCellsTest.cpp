#include <gmock/gmock.h>

#include "fakes/RecordingCanvas.h"
#include "util/Containers.h"
#include "views/CenteredTextFieldCell.h"
#include "views/ServersTableCell.h"
#include "views/UsersTableCell.h"

using namespace corvane;
using namespace corvane::views;
using fakes::RecordingCanvas;
using testing::ElementsAre;
using testing::IsEmpty;
using toolkit::NamedColor;
using toolkit::Rect;

namespace {

constexpr ControlView atWork{true, true};

toolkit::TextAttributes truncating(NamedColor color, double size) {
    return {color, size, {toolkit::TextAlignment::natural, toolkit::LineBreakMode::truncatingTail}};
}

util::Value picture() {
    return util::Value(std::make_shared<fakes::FakeImage>("face", toolkit::Size{24, 24}));
}

util::Dictionary userValue() {
    return {{"image", picture()}, {"fullName", "Ada Byron"}, {"userType", "Administrator"}};
}

RecordingCanvas drawn(const TextFieldCell& cell, const Rect& frame, const ControlView& view = {}) {
    RecordingCanvas canvas;
    cell.drawInteriorWithFrame(frame, view, canvas);
    return canvas;
}

struct Users : testing::Test {
    Users() { cell.setObjectValue(userValue()); }
    UsersTableCell cell;
};

struct Servers : testing::Test {
    Servers() {
        cell.setObjectValue(
            util::Dictionary{{"hostName", "ldap.merrowby.example"}, {"ipAddress", "10.0.0.7"}});
    }
    fakes::FakeImageSource images;
    ServersTableCell cell{images};
};

/// The attributes of the two lines that are drawn.
std::vector<toolkit::TextAttributes> attributes(const TextFieldCell& cell, const ControlView& view) {
    std::vector<toolkit::TextAttributes> all;
    for (const auto& text : drawn(cell, {{0, 0}, {200, 40}}, view).texts)
        all.push_back(text.text.attributes);
    return all;
}

} // namespace

TEST(CenteredTextFieldCell, drawing_putsTheTextIntoTheMiddleOfTheHeight) {
    CenteredTextFieldCell cell;
    cell.setAttributes(truncating(NamedColor::black, 16)); // lines of 20 points
    cell.setObjectValue(util::Value("abc"));
    const auto canvas = drawn(cell, {{7, 100}, {300, 51}});
    ASSERT_EQ(canvas.texts.size(), 1U);
    EXPECT_EQ(canvas.texts[0].text.string, "abc");
    EXPECT_EQ(canvas.texts[0].rect, (Rect{{7, 115.5}, {300, 20}}));
}

TEST(CenteredTextFieldCell, drawing_inALowRow_fillsIt) {
    CenteredTextFieldCell cell;
    cell.setAttributes(truncating(NamedColor::black, 16));
    cell.setObjectValue(util::Value("abc"));
    EXPECT_EQ(drawn(cell, {{0, 10}, {300, 12}}).texts[0].rect, (Rect{{0, 10}, {300, 12}}));
}

TEST(CenteredTextFieldCell, copy_drawsTheSame) {
    CenteredTextFieldCell cell;
    cell.setObjectValue(util::Value("abc"));
    const Rect frame{{0, 0}, {100, 60}};
    EXPECT_EQ(drawn(*cell.copy(), frame).texts, drawn(cell, frame).texts);
}

TEST(TextFieldCell, drawing_fillsItsFrame) {
    TextFieldCell cell;
    cell.setObjectValue(util::Value(42));
    const auto canvas = drawn(cell, {{1, 2}, {3, 4}});
    EXPECT_EQ(canvas.texts[0].text.string, "42");
    EXPECT_EQ(canvas.texts[0].rect, (Rect{{1, 2}, {3, 4}}));
}

TEST_F(Users, drawing_hasThePictureAndTwoLines) {
    const auto canvas = drawn(cell, {{0, 50}, {300, 34}});
    EXPECT_THAT(canvas.drawn, ElementsAre("image face 4,78 over", "text Ada Byron", "text Administrator"));
    EXPECT_EQ(canvas.texts[0].rect, (Rect{{32, 50}, {264, 16}}));
    EXPECT_EQ(canvas.texts[1].rect, (Rect{{32, 67}, {264, 16}}));
}

TEST_F(Users, drawing_furtherRight_countsTheXInTheWidthToo) {
    const auto canvas = drawn(cell, {{10, 0}, {300, 34}});
    EXPECT_EQ(canvas.drawn[0], "image face 14,28 over");
    EXPECT_EQ(canvas.texts[0].rect, (Rect{{42, 0}, {254, 16}}));
    EXPECT_EQ(canvas.texts[1].rect, (Rect{{42, 17}, {254, 16}}));
}

TEST_F(Users, drawing_withoutAPicture_hasTheTwoLinesOnly) {
    cell.setObjectValue(util::Dictionary{{"fullName", "Ada"}, {"userType", "User"}});
    EXPECT_THAT(drawn(cell, {}).drawn, ElementsAre("text Ada", "text User"));
    cell.setObjectValue(util::Dictionary{{"image", "not one"}, {"fullName", "Ada"}, {"userType", "User"}});
    EXPECT_THAT(drawn(cell, {}).drawn, ElementsAre("text Ada", "text User"));
}

TEST_F(Users, attributes_areThoseOfTheSelectionOnlyWhereTheKeyboardIsAtWork) {
    const auto plain = ElementsAre(truncating(NamedColor::black, 13), truncating(NamedColor::black, 11));
    EXPECT_THAT(attributes(cell, atWork), plain);
    cell.setHighlighted(true);
    EXPECT_THAT(attributes(cell, atWork),
                ElementsAre(truncating(NamedColor::white, 13), truncating(NamedColor::white, 11)));
    EXPECT_THAT(attributes(cell, {false, true}), plain) << "not the first responder";
    EXPECT_THAT(attributes(cell, {true, false}), plain) << "not the key window";
}

TEST_F(Users, copy_sharesTheAttributes) {
    cell.setHighlighted(true);
    const auto before = cell.nameAttrs.use_count();
    const auto copy = cell.copy();
    EXPECT_EQ(cell.nameAttrs.use_count(), before + 1);
    const auto& users = dynamic_cast<const UsersTableCell&>(*copy);
    EXPECT_EQ(users.nameAttrs, cell.nameAttrs);
    EXPECT_EQ(users.selectedNameAttrs, cell.selectedNameAttrs);
    EXPECT_EQ(users.subtextAttrs, cell.subtextAttrs);
    EXPECT_EQ(users.selectedSubtextAttrs, cell.selectedSubtextAttrs);
    EXPECT_TRUE(users.isHighlighted());
    EXPECT_EQ(users.objectValue(), cell.objectValue());
}

TEST_F(Servers, drawing_hasTheApplicationsPictureAndTwoLines) {
    const auto canvas = drawn(cell, {{0, 50}, {300, 40}});
    EXPECT_THAT(images.asked, ElementsAre("Server"));
    EXPECT_THAT(canvas.drawn,
                ElementsAre("image Server 4,86 over", "text ldap.merrowby.example", "text 10.0.0.7"));
    EXPECT_EQ(canvas.texts[0].rect, (Rect{{40, 57}, {256, 16}}));
    EXPECT_EQ(canvas.texts[1].rect, (Rect{{40, 73}, {256, 16}}));
}

TEST_F(Servers, drawing_furtherRight_countsTheXInTheWidthToo) {
    const auto canvas = drawn(cell, {{10, 0}, {300, 40}});
    EXPECT_EQ(canvas.drawn[0], "image Server 14,36 over");
    EXPECT_EQ(canvas.texts[0].rect, (Rect{{50, 7}, {246, 16}}));
    EXPECT_EQ(canvas.texts[1].rect, (Rect{{50, 23}, {246, 16}}));
}

TEST_F(Servers, drawing_withoutThatPicture_hasTheTwoLinesOnly) {
    images.hasImages = false;
    EXPECT_THAT(drawn(cell, {}).drawn, ElementsAre("text ldap.merrowby.example", "text 10.0.0.7"));
}

TEST_F(Servers, attributes_areThoseOfTheSelectionOnlyWhereTheKeyboardIsAtWork) {
    const auto plain = ElementsAre(truncating(NamedColor::black, 11), truncating(NamedColor::gray, 10));
    EXPECT_THAT(attributes(cell, atWork), plain);
    cell.setHighlighted(true);
    EXPECT_THAT(attributes(cell, atWork),
                ElementsAre(truncating(NamedColor::white, 11), truncating(NamedColor::white, 10)));
    EXPECT_THAT(attributes(cell, {false, true}), plain);
    EXPECT_THAT(attributes(cell, {true, false}), plain);
}

TEST_F(Servers, copy_sharesAttributesAndIcon) {
    EXPECT_EQ(cell.defaultIcon, nullptr) << "the cell itself never sets one";
    cell.defaultIcon = std::make_shared<fakes::FakeImage>("icon", toolkit::Size{32, 32});
    const auto copy = cell.copy();
    EXPECT_EQ(cell.defaultIcon.use_count(), 2);
    EXPECT_EQ(cell.nameAttrs.use_count(), 2);
    EXPECT_EQ(cell.selectedNameAttrs.use_count(), 2);
    EXPECT_EQ(cell.countAttrs.use_count(), 2);
    EXPECT_EQ(cell.selectedCountAttrs.use_count(), 2);
    const Rect frame{{0, 0}, {200, 40}};
    EXPECT_EQ(drawn(*copy, frame).drawn, drawn(cell, frame).drawn);
    EXPECT_EQ(drawn(cell, frame).drawn.front(), "image Server 4,36 over") << "the icon isn't what is drawn";
}
