#include <gmock/gmock.h>

#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include "qt/QtHarness.h"
#include "qt/adapters/QtTableView.h"
#include "qt/look/Appearance.h"
#include "qt/widgets/BackgroundPanel.h"
#include "qt/widgets/CellDelegate.h"
#include "util/Containers.h"
#include "views/ServersTableCell.h"
#include "views/UsersTableCell.h"

namespace corvane::qt {
namespace {

using toolkit::CompositingOperation;
using toolkit::NamedColor;
using toolkit::Rect;

/// A picture of 100 by 60 points with a canvas of the light or the dark theme.
struct Picture {
    explicit Picture(bool dark = false) : palette(ownPalette(dark)) { image.fill(Qt::transparent); }
    [[nodiscard]] QColor at(int x, int y) const { return image.pixelColor(x, y); }
    /// The smallest rectangle that holds everything that was drawn.
    [[nodiscard]] QRect inked() const {
        QRect all;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y).alpha() > 0) all |= QRect(x, y, 1, 1);
        return all;
    }
    QPalette palette;
    QImage image{100, 60, QImage::Format_ARGB32_Premultiplied};
    QPainter painter{&image};
    PainterCanvas canvas{painter, palette, QFont()};
};

toolkit::AttributedString text(const std::string& string, NamedColor color = NamedColor::black,
                               double font = 13, toolkit::ParagraphStyle style = {}) {
    return {string, {color, font, style}};
}

constexpr toolkit::ParagraphStyle truncating{toolkit::TextAlignment::natural,
                                             toolkit::LineBreakMode::truncatingTail};
constexpr toolkit::ParagraphStyle centred{toolkit::TextAlignment::center,
                                          toolkit::LineBreakMode::wordWrapping};

TEST(PainterCanvas, NamedColoursAreTheThemes) {
    for (const bool dark : {false, true}) {
        Picture picture(dark);
        const Rect all{{0, 0}, {100, 60}};
        picture.canvas.fillRect(all, NamedColor::black, CompositingOperation::sourceOver);
        EXPECT_EQ(picture.at(5, 5), picture.palette.color(QPalette::Text));
        picture.canvas.fillRect(all, NamedColor::white, CompositingOperation::sourceOver);
        EXPECT_EQ(picture.at(5, 5), picture.palette.color(QPalette::HighlightedText));
        picture.canvas.fillRect(all, NamedColor::gray, CompositingOperation::sourceOver);
        EXPECT_EQ(picture.at(5, 5), picture.palette.color(QPalette::PlaceholderText));
    }
}

TEST(PainterCanvas, FillingOverLaysTheColourOverWhatIsThere) {
    Picture picture;
    picture.image.fill(Qt::black);
    const Rect left{{0, 0}, {50, 60}};
    picture.canvas.fillRect(left, toolkit::CalibratedWhite{1.0, 0.5}, CompositingOperation::sourceOver);
    EXPECT_NEAR(picture.at(10, 10).red(), 128, 2);
    EXPECT_EQ(picture.at(10, 10).alpha(), 255);
    EXPECT_EQ(picture.at(60, 10), QColor(Qt::black));
    picture.canvas.fillRect(left, toolkit::CalibratedWhite{1.0, 0.5}, CompositingOperation::copy);
    EXPECT_NEAR(picture.at(10, 10).alpha(), 128, 2);
}

TEST(PainterCanvas, AStrokeLiesOnTheOutline) {
    Picture picture;
    picture.canvas.strokeRect({{10, 10}, {40, 20}}, 4, toolkit::CalibratedWhite{0, 1},
                              CompositingOperation::sourceOver);
    EXPECT_EQ(picture.inked(), QRect(8, 8, 44, 24));
    EXPECT_EQ(picture.at(30, 20).alpha(), 0);
}

TEST(PainterCanvas, AnImageStandsOnItsOrigin) {
    Picture picture;
    const auto server = QtImageSource().imageNamed("Server");
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(server->size(), (toolkit::Size{32, 32}));
    picture.canvas.drawImage(*server, {4, 40}, CompositingOperation::sourceOver);
    const auto inked = picture.inked();
    EXPECT_FALSE(inked.isEmpty());
    EXPECT_TRUE(QRect(4, 8, 32, 32).contains(inked));
    EXPECT_EQ(QtImageSource().imageNamed("No Such Picture"), nullptr);
}

TEST(PainterCanvas, ATextBeginsAtTheUpperLeftAndIsCutWhereItIsTooLong) {
    Picture picture;
    picture.canvas.drawText(text("a directory with a very long name", NamedColor::black, 13, truncating),
                            {{10, 5}, {60, 16}});
    const auto inked = picture.inked();
    EXPECT_GE(inked.left(), 9);
    EXPECT_LE(inked.right(), 70);
    EXPECT_GE(inked.top(), 5);
    EXPECT_LE(inked.bottom(), 24) << "one line";
    EXPECT_GE(inked.width(), 40);
}

TEST(PainterCanvas, ATextThatIsCutEndsInDots) {
    Picture picture;
    picture.canvas.drawText(text(std::string(40, 'l'), NamedColor::black, 13, truncating),
                            {{0, 5}, {60, 16}});
    const auto inked = picture.inked();
    for (int y = inked.top(); y < inked.center().y(); ++y)
        EXPECT_EQ(picture.at(inked.right(), y).alpha(), 0) << "nothing high at the end";
}

TEST(PainterCanvas, ATextThatIsNotCutGoesOnInTheNextLine) {
    Picture picture;
    picture.canvas.drawText(text("one two three four"), {{0, 0}, {60, 60}});
    EXPECT_GT(picture.inked().height(), 20);
}

TEST(PainterCanvas, ALineInALowRectangleIsDrawnWhole) {
    Picture low, high;
    low.canvas.drawText(text("gÅ", NamedColor::black, 18, truncating), {{0, 5}, {60, 6}});
    high.canvas.drawText(text("gÅ", NamedColor::black, 18, truncating), {{0, 5}, {60, 50}});
    EXPECT_EQ(low.image, high.image);
}

TEST(PainterCanvas, FontSizesAreDeviceIndependentPixels) {
    Picture picture;
    QFont font;
    font.setPixelSize(18);
    EXPECT_EQ(picture.canvas.sizeOfText(text("x", NamedColor::black, 18)).height,
              QFontMetricsF(font, &picture.image).height());
}

TEST(PainterCanvas, ACentredTextIsInTheMiddle) {
    Picture picture;
    picture.canvas.drawText(text("ooo", NamedColor::black, 18, centred), {{0, 0}, {100, 60}});
    EXPECT_NEAR(picture.inked().center().x(), 50, 2);
}

/// One row for each of two users.
class CellDelegateTest : public testing::Test {
protected:
    CellDelegateTest() {
        list_.setPalette(ownPalette(false));
        list_.addItems({"Ada", "Charles"});
        list_.setItemDelegate(&users_);
        list_.resize(300, 120);
        window_.resize(320, 200);
        list_.setParent(&window_);
        other_.setGeometry(10, 150, 100, 30);
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    }
    [[nodiscard]] QColor ground(int row) {
        const auto rect = list_.visualItemRect(list_.item(row));
        const auto picture = list_.viewport()->grab().toImage();
        const auto scale = picture.devicePixelRatio();
        return picture.pixelColor(int((rect.right() - 2) * scale), int((rect.center().y()) * scale));
    }

    /// Whether the second row has pixels of that colour of text.
    [[nodiscard]] bool hasTextOf(QPalette::ColorRole role) {
        const auto picture = list_.viewport()->grab(list_.visualItemRect(list_.item(1))).toImage();
        const auto wanted = list_.palette().color(role);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width() / 2; ++x)
                if (picture.pixelColor(x, y).rgb() == wanted.rgb()) return true;
        return false;
    }

    QtHarness qt_;
    CellDelegate users_{std::make_unique<views::UsersTableCell>(), usersRowHeight,
                        [](const QModelIndex& index) {
                            return util::Dictionary{{"fullName", index.data().toString().toStdString()},
                                                    {"userType", "User"}};
                        }};
    QWidget window_;
    QListWidget list_;
    QLineEdit other_{&window_};
};

TEST_F(CellDelegateTest, RowsAreAsHighAsTheCellIsLaidOutFor) {
    EXPECT_EQ(list_.visualItemRect(list_.item(0)).height(), usersRowHeight);
    list_.item(0)->setText(QString(200, 'x'));
    QCoreApplication::processEvents();
    EXPECT_LE(list_.visualItemRect(list_.item(0)).width(), list_.viewport()->width())
        << "long names are cut off";
}

TEST_F(CellDelegateTest, ASelectionIsPaleWhereTheKeyboardIsElsewhere) {
    const auto plain = ground(1);
    list_.setCurrentRow(1);
    list_.setFocus();
    const auto atWork = ground(1);
    EXPECT_TRUE(hasTextOf(QPalette::HighlightedText)) << "white on the selection";
    other_.setFocus();
    const auto away = ground(1);
    EXPECT_FALSE(hasTextOf(QPalette::HighlightedText));
    EXPECT_EQ(atWork, list_.palette().color(QPalette::Highlight));
    EXPECT_EQ(away, restingSelection(list_.palette()));
    EXPECT_NE(plain, away);
}

TEST_F(CellDelegateTest, BothLinesAreDrawn) {
    const auto rect = list_.visualItemRect(list_.item(0));
    const auto picture = list_.viewport()->grab(rect).toImage();
    const auto inkIn = [&](int from, int to) {
        int ink = 0;
        const double scale = picture.devicePixelRatio();
        for (int y = int(from * scale); y < int(to * scale); ++y)
            for (int x = int(32 * scale); x < picture.width(); ++x)
                ink += picture.pixelColor(x, y).lightness() < 128;
        return ink;
    };
    EXPECT_GT(inkIn(0, 16), 10);
    EXPECT_GT(inkIn(18, 34), 10);
}

/// A table whose rows the test gives and takes.
class Rows final : public toolkit::TableDataSource {
public:
    int count = 0;
    int numberOfRowsInTableView(const toolkit::TableView&) override { return count; }
    toolkit::ObjectValue objectValueForTableColumn(const toolkit::TableView&, const toolkit::TableColumn&,
                                                   int) override {
        return std::string();
    }
    void setObjectValue(const toolkit::TableView&, bool, const toolkit::TableColumn&, int) override {}
};

class EmptyTableTest : public testing::Test {
protected:
    EmptyTableTest() {
        widget_.resize(300, 150);
        widget_.emptyMessage().setMesageForEmptyList("No directories");
        table_.setDataSource(&rows_);
        widget_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget_));
    }
    /// Whether anything but ground is to be seen under the table's header.
    [[nodiscard]] bool saysSomething() {
        const auto picture = widget_.viewport()->grab().toImage();
        const auto ground = picture.pixelColor(1, picture.height() - 2);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = picture.width() / 4; x < picture.width() * 3 / 4; ++x)
                if (picture.pixelColor(x, y) != ground) return true;
        return false;
    }

    QtHarness qt_;
    Rows rows_;
    TableWidget widget_;
    QtTableView table_{widget_, {{"Name", "Name"}}, qt_.guard};
};

TEST_F(EmptyTableTest, WithoutRowsTheTableSaysSoAndReadsItOut) {
    EXPECT_TRUE(saysSomething());
    EXPECT_EQ(widget_.accessibleDescription(), "No directories");
}

TEST_F(EmptyTableTest, TheMessageStandsWhereItsRowWouldBe) {
    widget_.emptyMessage().setMessageRow(2);
    const auto picture = widget_.viewport()->grab().toImage();
    const auto ground = picture.pixelColor(1, picture.height() - 2);
    QRect inked;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = picture.width() / 4; x < picture.width() * 3 / 4; ++x)
            if (picture.pixelColor(x, y) != ground) inked |= QRect(x, y, 1, 1);
    rows_.count = 3;
    table_.reloadData();
    const auto row = widget_.visualRect(widget_.model()->index(2, 0));
    EXPECT_NEAR(inked.center().y() / picture.devicePixelRatio(), row.center().y(), 4);
}

/// Counts the paint events of a widget.
struct PaintCounter final : QObject {
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++count;
        return false;
    }
    int count = 0;
};

TEST_F(EmptyTableTest, AnotherMessageIsDrawnAtOnce) {
    QTest::qWait(50); // what the first showing has asked for
    PaintCounter paints(*widget_.viewport());
    widget_.emptyMessage().setMesageForEmptyList("Nothing at all");
    EXPECT_TRUE(QTest::qWaitFor([&] { return paints.count > 0; }, 2000));
    EXPECT_EQ(widget_.accessibleDescription(), "Nothing at all");
}

TEST_F(EmptyTableTest, WithRowsItSaysNothing) {
    rows_.count = 1;
    table_.reloadData();
    EXPECT_FALSE(saysSomething());
    EXPECT_EQ(widget_.accessibleDescription(), "");
    rows_.count = 0;
    table_.reloadData();
    EXPECT_TRUE(saysSomething());
    EXPECT_EQ(widget_.accessibleDescription(), "No directories");
}

TEST_F(EmptyTableTest, WithoutAMessageItSaysNothing) {
    widget_.emptyMessage().setAttributedMesageForEmptyList(std::nullopt);
    EXPECT_FALSE(saysSomething());
    EXPECT_EQ(widget_.accessibleDescription(), "");
}

TEST(BackgroundPanelTest, LiesOverTheWholeWidgetInBothThemes) {
    for (const bool dark : {false, true}) {
        BackgroundPanel panel;
        panel.setPalette(ownPalette(dark));
        panel.resize(40, 30);
        const auto picture = panel.grab().toImage();
        const auto ground = panel.palette().color(QPalette::Window);
        EXPECT_NE(picture.pixelColor(picture.width() / 2, picture.height() / 2), ground);
        const int right = picture.width() - 1, bottom = picture.height() - 1;
        const auto middle = picture.pixelColor(right / 2, bottom / 2);
        for (const auto& side : {QPoint(0, bottom / 2), QPoint(right, bottom / 2), QPoint(right / 2, 0),
                                 QPoint(right / 2, bottom)})
            EXPECT_NE(picture.pixelColor(side), middle) << side.x() << "," << side.y();
        EXPECT_EQ(middle.lightness() < 128, dark) << "texts of the theme stay legible";
    }
}

} // namespace
} // namespace corvane::qt
