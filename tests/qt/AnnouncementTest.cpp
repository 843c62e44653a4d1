// What screen readers read out although the keyboard is elsewhere.
#include "qt/widgets/Announcement.h"

#include <QAccessible>
#include <QVBoxLayout>

#include "qt/QtHarness.h"
#include "qt/widgets/FieldFormatting.h"
#include "qt/widgets/NoticeStrip.h"

namespace corvane::qt {
namespace {

class Announcement : public testing::Test {
protected:
    Announcement() {
        setAnnouncementListener([this](const QString& text) { heard_ << text; });
    }
    ~Announcement() override { setAnnouncementListener({}); }
    [[nodiscard]] static QAccessible::Role roleOf(QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget)->role();
    }
    [[nodiscard]] static QString nameOf(QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
    }

    QStringList heard_;
};

TEST_F(Announcement, ofAWidgetThatIsSeen_isReadOutAsANotification) {
    QWidget widget;
    makeAnnouncer(widget);
    widget.show();
    announce(widget, "Something new");
    EXPECT_EQ(heard_, QStringList{"Something new"});
    EXPECT_EQ(roleOf(widget), QAccessible::Notification);
    EXPECT_EQ(nameOf(widget), "Something new");
}

TEST_F(Announcement, ofAWidgetThatIsHidden_isItsNameForTheTimeWhenItIsShown) {
    QWidget widget;
    makeAnnouncer(widget);
    announce(widget, "Something new");
    EXPECT_TRUE(heard_.isEmpty());
    EXPECT_EQ(nameOf(widget), "Something new");
}

TEST_F(Announcement, strip_isReadOutWithItsExplanationWhenItsTextsChange) {
    NoticeStrip strip;
    strip.setMessageText("The list was not saved.");
    EXPECT_TRUE(heard_.isEmpty());
    strip.show();
    strip.setInformativeText("sssd.conf differs.");
    EXPECT_EQ(heard_, QStringList{"The list was not saved.\nsssd.conf differs."});
    EXPECT_EQ(roleOf(strip), QAccessible::Notification);
}

TEST_F(Announcement, messageOfAField_isANotificationOfItsOwn) {
    QWidget window;
    auto* field = new QLineEdit(&window);
    FieldFormatting formatting(*field, {[](auto&) { return true; },
                                        [](const std::string& text) {
                                            return FieldFormatting::Commit{false, "", "Not " + text + "."};
                                        }});
    window.resize(400, 200);
    window.show();
    field->setText("one");
    EXPECT_FALSE(formatting.commit());
    auto* message = window.findChild<QWidget*>("fieldMessage");
    ASSERT_NE(message, nullptr);
    EXPECT_TRUE(message->isVisible());
    EXPECT_EQ(roleOf(*message), QAccessible::Notification);
    EXPECT_EQ(nameOf(*message), "Not one.");
    field->setText("two");
    EXPECT_EQ(heard_, QStringList{"Not two."});
}

} // namespace
} // namespace corvane::qt
