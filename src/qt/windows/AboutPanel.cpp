#include "qt/windows/AboutPanel.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

#include "qt/Text.h"
#include "qt/look/Appearance.h"
#include "qt/look/Icons.h"
#include "qt/windows/FoldingSection.h"

namespace corvane::qt {

namespace {

constexpr int signSize = 96;
constexpr int textWidth = 384;

QString tr(const char* text) { return QCoreApplication::translate("AboutPanel", text); }

QString option(const std::map<std::string, std::string>& options, const char* key) {
    const auto found = options.find(key);
    return found == options.end() ? QString() : fromUtf8(found->second);
}

QString notice(const std::map<std::string, std::string>& options, const std::string& name) {
    const auto first = option(options, "NoticeStartYear");
    const auto last = option(options, "NoticeEndYear");
    const auto years = first == last || last.isEmpty() ? first : first + "–" + last;
    return tr("Copyright © %1 the authors of %2").arg(years, fromUtf8(name));
}

void addLine(QVBoxLayout& layout, const QString& text, bool secondary = false) {
    if (text.isEmpty()) return;
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    label->setFixedWidth(textWidth);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (secondary) makeSecondary(*label);
    layout.addWidget(label, 0, Qt::AlignHCenter);
}

/// One line for each library, to be folded away.
QWidget* componentList(const About& about) {
    QStringList components;
    for (const auto& each : about.components)
        components += fromUtf8(each);
    auto* label = new QLabel(components.join("\n"));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    makeSecondary(*label);
    return label;
}

} // namespace

AboutPanel::AboutPanel(const About& about, const std::map<std::string, std::string>& options,
                       HandlerGuard& guard) {
    setWindowTitle(tr("About %1").arg(fromUtf8(about.name)));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(32, 24, 32, 24);
    layout->setSpacing(4);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    auto* sign = new QLabel;
    sign->setPixmap(icon("Corvane").pixmap(QSize(signSize, signSize), devicePixelRatioF()));
    layout->addWidget(sign, 0, Qt::AlignHCenter);
    auto* name = new QLabel(fromUtf8(about.name));
    makeHeading(*name, 1.6);
    layout->addSpacing(8);
    layout->addWidget(name, 0, Qt::AlignHCenter);
    addLine(*layout, tr("Version %1").arg(fromUtf8(about.version)), true);
    layout->addSpacing(8);
    addLine(*layout, fromUtf8(about.summary));
    layout->addSpacing(8);
    addLine(*layout, notice(options, about.name), true);
    addLine(*layout, fromUtf8(about.licence), true);
    if (!about.components.empty()) {
        layout->addSpacing(8);
        layout->addWidget(new FoldingSection(tr("Software this is built on"), componentList(about), guard));
    }
    layout->addSpacing(16);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    layout->addWidget(buttons, 0, Qt::AlignHCenter);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

} // namespace corvane::qt
