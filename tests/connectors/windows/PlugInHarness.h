#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>

#include "connectors/ServerService.h"
#include "connectors/ldap/LdapPlugin.h"
#include "qt/forms/QtFormPresenter.h"
#include "qt/platform/QtRunLoop.h"
#include "sdk/PluginWrapper.h"

namespace corvane::connectors::ldap {

/// A program whose forms are real windows, and whose timers and background are real as well.
struct WindowHost : fakes::FakeHost {
    forms::FormPresenter& shownBy() override { return realWindows; }
    platform::RunLoop& loop() override { return realLoop; }
    plugins::BackgroundCalls& calls() override { return realCalls; }
    fakes::FakeLog lines;
    qt::HandlerGuard guard{lines};
    qt::QtFormPresenter realWindows{guard};
    qt::QtRunLoop realLoop{guard};
    plugins::BackgroundCalls realCalls{realLoop};
};

/// The plug-in behind its table, as the host works it, and a user in front of its windows.
class PlugInHarness : public testing::Test {
protected:
    PlugInHarness() { table_->setPluginAPIImplementor(self_, &service.table()); }
    ~PlugInHarness() override {
        closeAll();
        table_->destroy(self_);
    }
    PlugInHarness(const PlugInHarness&) = delete;
    PlugInHarness& operator=(const PlugInHarness&) = delete;

    void configure() {
        table_->configureButtonClicked(self_, nullptr);
        QApplication::processEvents();
    }
    [[nodiscard]] bool isDirty() { return table_->isDirty(self_) != 0; }
    [[nodiscard]] bool save() { return table_->saveChanges(self_) != 0; }
    [[nodiscard]] bool revert() { return table_->revertChanges(self_) != 0; }
    [[nodiscard]] bool selfTest() { return table_->selfTest(self_) != 0; }
    [[nodiscard]] bool isEnabled() { return table_->isEnabledForLocation(self_, nullptr) != 0; }

    /// The visible widget of that name in any window.
    template <typename Widget>
    [[nodiscard]] static Widget* find(const char* name) {
        for (auto* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == name && top->isVisible())
                if (auto* found = qobject_cast<Widget*>(top)) return found;
            for (auto* each : top->findChildren<Widget*>(name))
                if (each->isVisible()) return each;
        }
        return nullptr;
    }
    static void click(const char* name) {
        auto* button = find<QAbstractButton>(name);
        ASSERT_NE(button, nullptr) << "there is no button " << name;
        ASSERT_TRUE(button->isEnabled()) << name << " is disabled";
        // A check box takes clicks on its mark and its text, not on the room beside them.
        QTest::mouseClick(button, Qt::LeftButton, {}, {12, button->height() / 2});
        QApplication::processEvents();
    }
    static void type(const char* name, const QString& text) {
        auto* field = find<QWidget>(name);
        ASSERT_NE(field, nullptr) << "there is no field " << name;
        field->setFocus();
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(field, Qt::Key_Delete);
        for (const auto letter : text)
            letter == '\n' ? QTest::keyClick(field, Qt::Key_Return) : QTest::keyClicks(field, letter);
        QApplication::processEvents();
    }
    static void choose(const char* name, int item) {
        auto* box = find<QComboBox>(name);
        ASSERT_NE(box, nullptr);
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Home);
        for (int i = 0; i < item; ++i)
            QTest::keyClick(box, Qt::Key_Down);
    }
    [[nodiscard]] static QString textOf(const char* name) {
        auto* label = find<QLabel>(name);
        return label == nullptr ? "" : label->text();
    }
    [[nodiscard]] static QStringList rows() {
        QStringList titles;
        auto* list = find<QListWidget>("servers");
        for (int i = 0; list != nullptr && i < list->count(); ++i)
            titles << list->item(i)->text();
        return titles;
    }
    static void clickRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        auto* list = find<QListWidget>("servers");
        ASSERT_NE(list, nullptr);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers,
                          list->visualItemRect(list->item(row)).center());
    }
    [[nodiscard]] static bool isShown(const char* window) { return find<QDialog>(window) != nullptr; }
    /// Everything that can be read in the window in front.
    [[nodiscard]] static QString frontText() {
        auto* front = QApplication::activeModalWidget();
        QStringList lines;
        if (front != nullptr)
            for (auto* label : front->findChildren<QLabel*>())
                if (label->isVisible()) lines << label->text();
        return lines.join('\n');
    }
    static void closeAll() {
        for (auto* top : QApplication::topLevelWidgets())
            if (auto* dialog = qobject_cast<QDialog*>(top)) dialog->reject();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    ServerService service{std::make_unique<WindowHost>()};

private:
    const CorvanePlugin* table_ = sdk::tableFor<LdapPlugin>();
    void* self_ = table_->create([](void*, const char*) {}, nullptr);
};

} // namespace corvane::connectors::ldap
