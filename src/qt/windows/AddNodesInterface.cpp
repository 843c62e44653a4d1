#include "qt/windows/AddNodesInterface.h"

#include <QCoreApplication>
#include <QShortcut>

#include "qt/Text.h"
#include "qt/look/Appearance.h"
#include "ui_AddNodes.h"

namespace corvane::qt {

struct AddNodesInterface::Form {
    Form() {
        ui.setupUi(&panel);
        makeHeading(*ui.panelHeading, 1.1);
        makeSecondary(*ui.panelNote);
        ui.panelNodes->emptyMessage().awakeFromNib();
        ui.panelNodes->emptyMessage().setMessageRow(1);
        QObject::connect(ui.panelFilter, &QLineEdit::textChanged, &panel, [this] { sayWhenEmpty(); });
        sayWhenEmpty();
        // The return key adds from wherever the keyboard is, the escape key closes.
        auto* escape = new QShortcut(Qt::Key_Escape, &panel);
        QObject::connect(escape, &QShortcut::activated, ui.panelDone, &QPushButton::click);
        QObject::connect(ui.panelFilter, &QLineEdit::returnPressed, ui.panelAdd, &QPushButton::click);
    }
    void sayWhenEmpty() {
        const auto tr = [](const char* text) { return QCoreApplication::translate("AddNodes", text); };
        const bool filters = !ui.panelFilter->text().isEmpty();
        const auto message =
            filters ? tr("No directory domain matches the filter") : tr("No directory domains to add");
        ui.panelNodes->emptyMessage().setMesageForEmptyList(toUtf8(message));
    }

    QWidget panel;
    Ui::AddNodes ui;
};

AddNodesInterface::AddNodesInterface(SettingsFile& settings, HandlerGuard& guard)
    : form_(std::make_unique<Form>()), window(form_->panel, form_->panel, guard, settings),
      selectNode(*form_->ui.panelNodes,
                 {{"NodeName", QCoreApplication::translate("AddNodes", "Directory Domain")}}, guard),
      filter(*form_->ui.panelFilter, guard), addButton(*form_->ui.panelAdd, guard),
      doneButton(*form_->ui.panelDone, guard) {}

AddNodesInterface::~AddNodesInterface() = default;

} // namespace corvane::qt
