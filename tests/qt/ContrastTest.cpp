// What people who don't see well can read and see: measured on the colours, and on what is drawn with them.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "qt/QtHarness.h"
#include "qt/look/Appearance.h"

namespace corvane::qt {
namespace {

struct Theme {
    std::string name;
    QPalette palette;
};

QPalette desktopPalette(const char* window, const char* base, const char* button, const char* text,
                        const char* accent) {
    QPalette palette{QColor(button), QColor(window)};
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, QColor(text));
    palette.setColor(QPalette::Base, QColor(base));
    palette.setColor(QPalette::Highlight, QColor(accent));
    auto placeholder = QColor(text);
    placeholder.setAlphaF(0.5F);
    palette.setColor(QPalette::PlaceholderText, placeholder);
    return palette;
}

/// Our own colours as they are, and desktops' as the program makes them readable.
std::vector<Theme> themes() {
    return {
        {"own light", ownPalette(false)},
        {"own dark", ownPalette(true)},
        {"a bare desktop", readable(QPalette())},
        {"a light desktop", readable(desktopPalette("#eff0f1", "#fcfcfc", "#eff0f1", "#31363b", "#3daee9"))},
        {"a dark desktop", readable(desktopPalette("#31363b", "#232629", "#31363b", "#eff0f1", "#3daee9"))},
        {"a pale desktop", readable(desktopPalette("#f6f5f4", "#ffffff", "#f0f0f0", "#8a8a8a", "#ffd83d"))},
        {"a dim desktop", readable(desktopPalette("#3a3a3a", "#2e2e2e", "#444444", "#7a7a7a", "#555555"))}};
}

/// Everything that is written, and what it is written on.
const std::vector<std::pair<QPalette::ColorRole, QPalette::ColorRole>> texts = {
    {QPalette::WindowText, QPalette::Window},
    {QPalette::Text, QPalette::Base},
    {QPalette::Text, QPalette::AlternateBase},
    {QPalette::ButtonText, QPalette::Button},
    {QPalette::PlaceholderText, QPalette::Window},
    {QPalette::PlaceholderText, QPalette::Base},
    {QPalette::PlaceholderText, QPalette::AlternateBase},
    {QPalette::HighlightedText, QPalette::Highlight},
    {QPalette::ToolTipText, QPalette::ToolTipBase},
    {QPalette::Link, QPalette::Window}};

TEST(Contrast, selectionAwayFromTheKeyboard_leavesItsTextsReadable) {
    for (const auto& [name, palette] : themes()) {
        const auto ground = restingSelection(palette);
        EXPECT_GE(contrast(palette.color(QPalette::Text), ground), readableText) << name;
        EXPECT_GE(contrast(palette.color(QPalette::PlaceholderText), ground), readableText) << name;
    }
}

/// The least contrast between the outermost line of a widget's middle and what lies around it.
double borderContrast(QWidget& widget, const QPalette& palette) {
    QWidget ground;
    ground.setPalette(palette);
    ground.resize(240, 80);
    widget.setParent(&ground);
    widget.setPalette(palette);
    widget.setGeometry(20, 20, 160, 32);
    ground.ensurePolished();
    QImage image(ground.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(palette.color(QPalette::Window));
    ground.render(&image);
    widget.setParent(nullptr);
    const int x = 20 + 40;
    double most = 1;
    for (int y = 18; y < 24; ++y)
        most = std::max(most, contrast(image.pixelColor(x, y), palette.color(QPalette::Window)));
    return most;
}

} // namespace

TEST(Contrast, scale_goesFrom1To21) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.01);
    EXPECT_NEAR(contrast(QColor("#777777"), Qt::white), 4.48, 0.01);
    EXPECT_NEAR(contrast(QColor(0, 0, 0, 0), Qt::white), 1, 0.01);
}

TEST(Contrast, everyText_isReadableInEveryTheme) {
    for (const auto& [name, palette] : themes()) {
        for (const auto& [role, ground] : texts)
            EXPECT_GE(contrast(palette.color(role), palette.color(ground)), 4.5)
                << name << ": role " << role << " on role " << ground;
        for (const auto color :
             {toolkit::TextColor::black, toolkit::TextColor::gray, toolkit::TextColor::red})
            EXPECT_GE(contrast(textColor(color, palette), palette.color(QPalette::Base)), 4.5)
                << name << ": row colour " << int(color);
    }
}

TEST(Contrast, fieldsBordersAndLists_areSeenInEveryTheme) {
    for (const auto& [name, palette] : themes()) {
        QLineEdit field;
        EXPECT_GE(borderContrast(field, palette), 3.0) << name << ": field";
        QComboBox popUp;
        EXPECT_GE(borderContrast(popUp, palette), 3.0) << name << ": pop-up";
        QTreeView list;
        EXPECT_GE(borderContrast(list, palette), 3.0) << name << ": list";
    }
}

TEST(Contrast, whatIsReadableAlready_isLeftAlone) {
    EXPECT_EQ(readable(ownPalette(false)), ownPalette(false));
    EXPECT_EQ(readable(ownPalette(true)), ownPalette(true));
}

/// A button that has no face at rest, like the padlock.
TEST(FocusRing, ofAFlatButton_isDrawnForTheKeyboard) {
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* other = new QLineEdit;
    auto* lock = new QToolButton;
    lock->setAutoRaise(true);
    lock->setText("Click the lock");
    lock->setFocusPolicy(Qt::StrongFocus);
    layout->addWidget(other);
    layout->addWidget(lock);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    other->setFocus();
    const auto without = lock->grab().toImage();
    QTest::keyClick(other, Qt::Key_Tab);
    ASSERT_TRUE(lock->hasFocus());
    EXPECT_NE(lock->grab().toImage(), without);
}

} // namespace corvane::qt
