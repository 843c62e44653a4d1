// The configuration of a connector that has nothing to set but whether it is used. Built once for each such
// connector, under its name.
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>
#include <memory>
#include <optional>

#include "sdk/Host.h"
#include "sdk/PluginWrapper.h"

namespace {

constexpr const char* connectorName = CORVANE_CONNECTOR;

struct Texts {
    const char* what;  ///< what the connector is for
    const char* state; ///< what switching it off means, or why that can't be done
    bool canBeSwitchedOff;
};

Texts textsOf(const QString& connector) {
    if (connector == "Local")
        return {"The accounts that are kept on this machine itself, and the groups that they belong to.",
                "It can’t be switched off: without it nobody could log in when no server answers.", false};
    if (connector == "BSD")
        return {"The machine’s own files: passwd, group and their kin.",
                "It can’t be switched off: the system’s own accounts stand in these files.", false};
    return {"Users and groups of a domain that this machine has joined.",
            "Switched off, its domains are no longer asked. Their settings are kept.", true};
}

QLabel* paragraph(const char* text, QWidget& parent) {
    auto* label = new QLabel(QString::fromUtf8(text), &parent);
    label->setWordWrap(true);
    return label;
}

class ConnectorDialog final : public QDialog {
public:
    ConnectorDialog(bool enabled, QWidget* parent) : QDialog(parent) {
        const auto texts = textsOf(connectorName);
        setWindowTitle(QString("%1 Connector").arg(connectorName));
        setWindowModality(Qt::WindowModal);
        auto* heading = new QLabel(windowTitle(), this);
        auto font = heading->font();
        font.setBold(true);
        font.setPointSizeF(font.pointSizeF() * 1.15);
        heading->setFont(font);
        use_ = new QCheckBox("&Use this connector", this);
        use_->setChecked(enabled);
        use_->setEnabled(texts.canBeSwitchedOff || !enabled);
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(24, 24, 24, 16);
        layout->setSpacing(12);
        layout->addWidget(heading);
        layout->addWidget(paragraph(texts.what, *this));
        layout->addWidget(use_);
        layout->addWidget(paragraph(texts.state, *this));
        layout->addStretch();
        layout->addWidget(buttons());
        setMinimumWidth(400);
        (use_->isEnabled() ? static_cast<QWidget*>(use_) : this)->setFocus();
    }
    [[nodiscard]] bool isUsed() const { return use_->isChecked(); }

private:
    QDialogButtonBox* buttons() {
        auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
        connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
        return box;
    }
    QCheckBox* use_ = nullptr;
};

/// Keeps the user's wish until the changes are saved; the host writes it then.
class ConnectorPlugin {
public:
    void setPluginAPIImplementor(const CorvaneHost& host) { host_ = corvane::sdk::Host(host); }
    bool canConfigure() { return true; }
    bool isEnabledForLocation(const char* /*location*/) { return wanted_.value_or(isEnabled()); }
    bool isDirty() { return wanted_ && *wanted_ != isEnabled(); }

    void configureButtonClicked(void* /*sender*/) {
        dialog_ =
            std::make_unique<ConnectorDialog>(isEnabledForLocation(nullptr), QApplication::activeWindow());
        QObject::connect(dialog_.get(), &QDialog::accepted, dialog_.get(),
                         [this] { wish(dialog_->isUsed()); });
        dialog_->open();
    }
    bool saveChanges() {
        if (isDirty()) host_.setPluginEnabled(connectorName, *wanted_);
        wanted_.reset();
        return true;
    }
    bool revertChanges() {
        wanted_.reset();
        return true;
    }

private:
    void wish(bool enabled) {
        wanted_ = enabled;
        if (isDirty()) host_.markDirty();
    }
    [[nodiscard]] bool isEnabled() const { return host_.isPluginEnabled(connectorName); }

    corvane::sdk::Host host_;
    std::optional<bool> wanted_;
    std::unique_ptr<ConnectorDialog> dialog_;
};

} // namespace

CORVANE_PLUGIN(ConnectorPlugin)
