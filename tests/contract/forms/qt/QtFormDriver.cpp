#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include "../FormDriver.h"
#include "fakes/FakePlatform.h"
#include "qt/Text.h"
#include "qt/forms/QtFormPresenter.h"

namespace corvane::contract {
namespace {

class QtFormDriver final : public FormDriver {
public:
    QtFormDriver() = default;
    QtFormDriver(const QtFormDriver&) = delete;
    QtFormDriver& operator=(const QtFormDriver&) = delete;
    ~QtFormDriver() override { QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    [[nodiscard]] forms::FormPresenter& presenter() override { return presenter_; }
    [[nodiscard]] bool isShown(const std::string& form) override {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (auto* top : QApplication::topLevelWidgets())
            if (top->isVisible() && top->objectName() == qt::fromUtf8(form)) return true;
        return false;
    }
    void type(const std::string& item, const std::string& text) override {
        auto& field = required<QLineEdit>(item);
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, qt::fromUtf8(text));
    }
    void check(const std::string& item, bool isChecked) override {
        auto& box = required<QCheckBox>(item);
        if (box.isChecked() != isChecked) QTest::keyClick(&box, Qt::Key_Space);
    }
    void select(const std::string& list, const std::vector<int>& rows) override {
        auto& widget = required<QListWidget>(list);
        auto modifiers = Qt::NoModifier;
        for (const int row : rows) {
            QTest::mouseClick(widget.viewport(), Qt::LeftButton, modifiers,
                              widget.visualItemRect(widget.item(row)).center());
            modifiers = Qt::ControlModifier;
        }
    }
    [[nodiscard]] bool canPress(const std::string& button) override {
        return required<QPushButton>(button).isEnabled();
    }
    void press(const std::string& button) override {
        ASSERT_TRUE(canPress(button)) << button << " is disabled";
        QTest::mouseClick(&required<QPushButton>(button), Qt::LeftButton);
    }
    void dismiss() override { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); }
    [[nodiscard]] std::string problem() override {
        const auto& label = required<QLabel>("problem");
        return label.isVisible() ? qt::toUtf8(label.text()) : "";
    }
    [[nodiscard]] std::string shownText(const std::string& item) override {
        return qt::toUtf8(required<QLineEdit>(item).text());
    }

private:
    template <typename Widget>
    [[nodiscard]] Widget& required(const std::string& name) {
        QApplication::processEvents();
        for (auto* top : QApplication::topLevelWidgets())
            if (top->isVisible())
                if (auto* found = top->findChild<Widget*>(qt::fromUtf8(name))) return *found;
        throw std::logic_error("nothing can be seen that is called " + name);
    }

    fakes::FakeLog log_;
    qt::HandlerGuard guard_{log_};
    qt::QtFormPresenter presenter_{guard_};
};

} // namespace

std::unique_ptr<FormDriver> makeFormDriver() { return std::make_unique<QtFormDriver>(); }

} // namespace corvane::contract
