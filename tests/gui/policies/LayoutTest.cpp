// What people who use the keyboard, or a small screen, count on in the real window.
#include <QAbstractButton>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>
#include <QTabBar>
#include <QTimer>
#include <map>

#include "gui/policies/PolicyWindow.h"

namespace corvane::gui {
namespace {

class Layout : public PolicyWindow {
protected:
    [[nodiscard]] QWidget& shell() { return *view(authenticationTable).window(); }
    void showEveryState(const std::function<void(const std::string& state)>& look) {
        open();
        look("authentication");
        user().click("addNode");
        look("panel");
        user().answer("Cancel");
        user().clickRow(authenticationTable, 3);
        user().click("deleteNode");
        look("question");
        user().answer("Cancel");
        showContacts();
        look("contacts");
        user().click("kServices");
        look("services");
        user().click("kDebug");
        look("editor");
        user().click("kSearchPaths");
        user().clickTab("Authentication");
        user().choose("selectSearchPolicy", "Automatic");
        machine_.folder.write("etc/sssd/sssd.conf",
                              machine_.folder.read("etc/sssd/sssd.conf") + "# changed\n");
        // The list, which the panel for adding has marked, and the mode are refused one by one.
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, [this] {
            if (QApplication::activeModalWidget()) user().answer("OK");
        });
        watch.start(20);
        user().click("applyButton");
        watch.stop();
        look("refused");
    }
    static QChar mnemonicOf(const QString& text) {
        const auto keys = QKeySequence::mnemonic(text);
        return keys.isEmpty() ? QChar() : QChar(int(keys[0].key()));
    }
    /// Letters of everything that can be seen, with what bears them.
    [[nodiscard]] std::map<QChar, QStringList> mnemonics() {
        std::map<QChar, QStringList> found;
        const auto note = [&found](const QString& text) {
            if (const auto letter = mnemonicOf(text); !letter.isNull()) found[letter] << text;
        };
        for (auto* each : shell().findChildren<QAbstractButton*>())
            if (each->isVisible() && each->isEnabled()) note(each->text());
        for (auto* each : shell().findChildren<QLabel*>())
            if (each->isVisible() && each->isEnabled() && each->buddy()) note(each->text());
        for (auto* bar : shell().findChildren<QTabBar*>())
            for (int tab = 0; bar->isVisible() && tab < bar->count(); ++tab)
                note(bar->tabText(tab));
        for (auto* action : shell().findChild<QMenuBar*>()->actions())
            note(action->text());
        return found;
    }
    /// What the tab key visits, from the first one on.
    [[nodiscard]] QList<QWidget*> tabChain() {
        QList<QWidget*> chain;
        for (auto* at = shell().nextInFocusChain(); at != &shell(); at = at->nextInFocusChain())
            if (at->isVisible() && at->isEnabled() && (at->focusPolicy() & Qt::TabFocus)) chain << at;
        return chain;
    }
};

TEST_F(Layout, eachMnemonic_isUsedOnceInAWindow) {
    showEveryState([&](const std::string& state) {
        for (const auto& [letter, texts] : mnemonics())
            EXPECT_EQ(texts.size(), 1) << state << ": " << texts.join(" | ").toStdString();
    });
}

TEST_F(Layout, everyButton_isInsideTheWindowAndTheWindowOnTheScreen) {
    const auto screen = QGuiApplication::primaryScreen()->availableGeometry();
    showEveryState([&](const std::string& state) {
        const QRect inside(QPoint(), shell().size());
        EXPECT_TRUE(screen.contains(shell().frameGeometry()))
            << state << ": " << shell().frameGeometry().height() << " of " << screen.height();
        for (auto* each : shell().findChildren<QAbstractButton*>()) {
            if (!each->isVisible() || each->visibleRegion().isEmpty()) continue;
            const QRect place(each->mapTo(&shell(), QPoint()), each->size());
            EXPECT_TRUE(inside.contains(place)) << state << ": " << each->objectName().toStdString();
            EXPECT_EQ(each->visibleRegion().boundingRect(), each->rect())
                << state << ": " << each->objectName().toStdString();
        }
        for (const auto* name : {"applyButton", "helpButton", "authorizationView"})
            EXPECT_TRUE(user().isVisible(name)) << state << ": " << name;
    });
}

TEST_F(Layout, theTabKey_goesDownThePageAndAlongItsLines) {
    showEveryState([&](const std::string& state) {
        if (state == "panel" || state == "question") return; // what a sheet covers can't be visited
        const auto chain = tabChain();
        ASSERT_FALSE(chain.isEmpty());
        // Beginning with the topmost one, because the chain is a ring.
        qsizetype first = 0;
        const auto place = [&](qsizetype at) {
            auto* each = chain[(first + at) % chain.size()];
            return QRect(each->mapTo(&shell(), QPoint()), each->size());
        };
        for (qsizetype at = 0; at < chain.size(); ++at)
            if (chain[at]->mapTo(&shell(), QPoint()).y() < place(0).y()) first = at;
        for (qsizetype at = 1; at < chain.size(); ++at) {
            const bool sameLine =
                place(at).top() <= place(at - 1).bottom() && place(at).bottom() >= place(at - 1).top();
            const bool further = sameLine
                                     ? place(at).x() >= place(at - 1).x() || place(at).y() > place(at - 1).y()
                                     : place(at).y() > place(at - 1).y();
            EXPECT_TRUE(further) << state << ": "
                                 << chain[(first + at - 1) % chain.size()]->objectName().toStdString()
                                 << " before "
                                 << chain[(first + at) % chain.size()]->objectName().toStdString();
        }
    });
}

TEST_F(Layout, theMnemonicOfThePopUp_givesItTheKeyboardInBothPanes) {
    open();
    user().press(Qt::Key_R, Qt::AltModifier);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "selectSearchPolicy");
    showContacts();
    user().press(Qt::Key_R, Qt::AltModifier);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "selectContactPolicy");
}

} // namespace
} // namespace corvane::gui
