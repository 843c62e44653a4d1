#include <gmock/gmock.h>

#include "fakes/FakeWindow.h"
#include "fakes/RecordingCanvas.h"
#include "views/EmptyMessageTableView.h"
#include "views/PositioningAdditions.h"
#include "views/SettingsBackgroundView.h"

using namespace corvane;
using namespace corvane::views;
using testing::ElementsAre;
using testing::IsEmpty;
using toolkit::NamedColor;
using toolkit::Rect;

namespace {

/// Rows of 17 points, 2 apart; the frame isn't the bounds.
struct EmptyMessage : testing::Test, EmptyMessageTableView::Table {
    void drawTable() override { canvas.drawn.emplace_back("table"); }
    [[nodiscard]] int numberOfRows() const override { return rows; }
    [[nodiscard]] Rect frame() const override { return {{3, 5}, {300, 200}}; }
    [[nodiscard]] double rowHeight() const override { return 17; }
    [[nodiscard]] toolkit::Size intercellSpacing() const override { return {3, 2}; }
    void setNeedsDisplay() override { ++displays; }

    fakes::RecordingCanvas canvas;
    int rows = 0;
    int displays = 0;
    EmptyMessageTableView view{*this};
};

struct Background : testing::Test {
    std::vector<std::string> drawn() {
        fakes::RecordingCanvas canvas;
        view.drawRect({{1, 1}, {2, 2}}, {{0, 0}, {120, 80}}, canvas);
        return canvas.drawn;
    }
    SettingsBackgroundView view;
};

} // namespace

TEST_F(EmptyMessage, drawing_withRows_hasNoMessage) {
    view.setMesageForEmptyList("No directories");
    rows = 1;
    view.drawRect(canvas);
    EXPECT_THAT(canvas.drawn, ElementsAre("table"));
}

TEST_F(EmptyMessage, drawing_withoutAMessage_hasTheTableOnly) {
    view.drawRect(canvas);
    EXPECT_THAT(canvas.drawn, ElementsAre("table"));
}

TEST_F(EmptyMessage, drawing_withoutRows_hasTheMessageOverTheTable) {
    view.setMesageForEmptyList("No directories");
    view.drawRect(canvas);
    EXPECT_THAT(canvas.drawn, ElementsAre("table", "text No directories"));
    // The message is 22.5 points high, the row 17.
    EXPECT_EQ(canvas.texts[0].rect, (Rect{{3, 5 + (17 - 22.5) * 0.5}, {300, 200}}));
}

TEST_F(EmptyMessage, messageRow_movesTheBandDown) {
    view.setMesageForEmptyList("x");
    view.setMessageRow(2);
    view.drawRect(canvas);
    EXPECT_EQ(canvas.texts[0].rect.origin.y, 5 + 38 + (17 - 22.5) * 0.5);
    view.setMessageRow(-1);
    view.drawRect(canvas);
    EXPECT_EQ(canvas.texts[1].rect.origin.y, 5 - 19 + (17 - 22.5) * 0.5);
    EXPECT_EQ(displays, 3) << "the message and each row are drawn";
}

TEST_F(EmptyMessage, awakeFromNib_isRowZero) {
    view.setMesageForEmptyList("x");
    view.setMessageRow(7);
    view.awakeFromNib();
    view.drawRect(canvas);
    EXPECT_EQ(canvas.texts[0].rect.origin.y, 5 + (17 - 22.5) * 0.5);
}

TEST_F(EmptyMessage, plainMessage_isLargeGreyAndCentred) {
    view.setMesageForEmptyList("No directories");
    const toolkit::TextAttributes expected{
        NamedColor::gray, 18, {toolkit::TextAlignment::center, toolkit::LineBreakMode::wordWrapping}};
    ASSERT_TRUE(view.message());
    EXPECT_EQ(view.message()->attributes, expected);
    EXPECT_EQ(view.message()->string, "No directories");
}

TEST_F(EmptyMessage, attributedMessage_isTakenAsItIsAndMayBeTakenAway) {
    const toolkit::AttributedString message{"small", {NamedColor::black, 9, {}}};
    view.setAttributedMesageForEmptyList(message);
    view.drawRect(canvas);
    EXPECT_EQ(canvas.texts[0].text, message);
    view.setAttributedMesageForEmptyList(std::nullopt);
    view.drawRect(canvas);
    EXPECT_EQ(canvas.texts.size(), 1U);
    EXPECT_EQ(displays, 2) << "a change is drawn";
}

TEST_F(Background, drawing_fillsAndStrokesAllOfIt) {
    EXPECT_THAT(drawn(),
                ElementsAre("fill 0,0 120x80 white(1,0.45) over", "stroke 0,0 120x80 1 white(0.3,0.6) over"));
}

TEST_F(Background, colours_maySetOtherwiseAndTakenAway) {
    view.setMyFillColor(NamedColor::gray);
    view.setMyBorderColor(NamedColor::black);
    EXPECT_THAT(drawn(), ElementsAre("fill 0,0 120x80 gray over", "stroke 0,0 120x80 1 black over"));
    view.setMyFillColor(view.myFillColor());
    EXPECT_EQ(view.myFillColor(), toolkit::Color(NamedColor::gray)) << "the same colour once more";
    view.setMyFillColor(std::nullopt);
    view.setMyBorderColor(std::nullopt);
    EXPECT_EQ(view.myFillColor(), toolkit::Color(toolkit::CalibratedWhite{1.0, 0.45}));
    EXPECT_EQ(view.myBorderColor(), toolkit::Color(toolkit::CalibratedWhite{0.3, 0.6}));
}

TEST(CenterOverParentWindow, withAParent_isInItsMiddle) {
    fakes::Journal journal;
    fakes::FakeWindow parent(journal, "parent");
    fakes::FakeWindow window(journal, "window");
    parent.setFrame({{100, 200}, {600, 400}}, false, false);
    window.setFrame({{0, 0}, {201, 100}}, false, false);
    centerOverParentWindow(window, &parent);
    EXPECT_EQ(window.frame(), (Rect{{299.5, 350}, {201, 100}}));
}

TEST(CenterOverParentWindow, largerThanItsParent_protrudesOnAllSides) {
    EXPECT_EQ(originCenteredOver({{10, 10}, {20, 20}}, {100, 60}), (toolkit::Point{-30, -10}));
}

TEST(CenterOverParentWindow, withoutAParent_hasItsMiddleInTheScreensOrigin) {
    fakes::Journal journal;
    fakes::FakeWindow window(journal, "window");
    window.setFrame({{50, 60}, {200, 100}}, false, false);
    centerOverParentWindow(window, nullptr);
    EXPECT_EQ(window.frame(), (Rect{{-100, -50}, {200, 100}}));
}
