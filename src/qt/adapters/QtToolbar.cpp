#include "qt/adapters/QtToolbar.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <algorithm>

#include "qt/Text.h"
#include "qt/look/Icons.h"

namespace corvane::qt {

namespace {

constexpr int iconSize = 32;

/// The return key presses, as users of other toolbars are used to.
class ToolbarButton final : public QToolButton {
public:
    using QToolButton::QToolButton;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (isReturn) return click();
        QToolButton::keyPressEvent(event);
    }
    // A button that is marked stays so when it is clicked again.
    void nextCheckState() override {}
};

} // namespace

QtToolbar::QtToolbar(std::string identifier, HandlerGuard& guard)
    : identifier_(std::move(identifier)), guard_(guard), row_(new QWidget) {
    row_->setObjectName("toolbar");
    row_->setAccessibleName(QCoreApplication::translate("Toolbar", "Panes"));
    auto* layout = new QHBoxLayout(row_);
    layout->setContentsMargins(16, 4, 16, 8);
    layout->setSpacing(8);
    layout->addStretch(1);
}

QtToolbar::~QtToolbar() {
    if (row_ && !row_->parentWidget()) delete row_.data();
}

void QtToolbar::setDelegate(toolkit::ToolbarDelegate* delegate) {
    delegate_ = delegate;
    for (const auto& old : entries_)
        delete old.button;
    entries_.clear();
    if (!delegate) return;
    const auto selectable = delegate->toolbarSelectableItemIdentifiers(*this);
    for (const auto& name : delegate->toolbarDefaultItemIdentifiers(*this))
        addItem(delegate->itemForItemIdentifier(*this, name, true), std::ranges::count(selectable, name) > 0);
    validate();
}

void QtToolbar::addItem(toolkit::ToolbarItem item, bool selectable) {
    auto* button = new ToolbarButton(row_);
    button->setObjectName(fromUtf8(item.identifier));
    button->setText(withoutMnemonics(fromUtf8(item.label)));
    button->setAccessibleName(fromUtf8(item.label));
    if (!item.imageName.empty()) button->setIcon(icon(fromUtf8(item.imageName)));
    button->setIconSize({iconSize, iconSize});
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setCheckable(selectable);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setMinimumWidth(88);
    const auto name = item.identifier;
    QObject::connect(button, &QToolButton::clicked, &context_, [this, name] { clicked(name); });
    auto* layout = static_cast<QHBoxLayout*>(row_->layout());
    layout->insertWidget(layout->count() - 1, button);
    entries_.push_back({std::move(item), button, selectable});
}

void QtToolbar::clicked(const std::string& identifier) {
    const auto* hit = entry(identifier);
    if (!hit) return;
    const bool valid = !delegate_ || guard_.answer("a toolbar item", false,
                                                   [&] { return delegate_->validateToolbarItem(hit->item); });
    if (!valid) return validate();
    if (hit->selectable) setSelectedItemIdentifier(identifier);
    const auto item = hit->item;
    guard_.run("a toolbar item's action", [&] {
        if (item.action) item.action(item);
    });
}

void QtToolbar::validate() {
    for (const auto& each : entries_)
        each.button->setEnabled(guard_.answer("a toolbar item", false,
                                              [&] { return delegate_->validateToolbarItem(each.item); }));
}

const QtToolbar::Entry* QtToolbar::entry(std::string_view identifier) const {
    const auto found =
        std::ranges::find(entries_, identifier, [](const Entry& each) { return each.item.identifier; });
    return found == entries_.end() ? nullptr : &*found;
}

void QtToolbar::setVisible(bool visible) { row_->setVisible(visible && row_->parentWidget()); }

void QtToolbar::setSelectedItemIdentifier(const std::optional<std::string>& identifier) {
    const auto* named = identifier ? entry(*identifier) : nullptr;
    selected_ = named && named->selectable ? identifier : std::nullopt;
    for (const auto& each : entries_)
        each.button->setChecked(selected_ == each.item.identifier);
}

std::optional<std::string> QtToolbar::selectedItemIdentifier() const { return selected_; }

std::vector<toolkit::ToolbarItem> QtToolbar::items() const {
    std::vector<toolkit::ToolbarItem> all;
    for (const auto& each : entries_)
        all.push_back(each.item);
    return all;
}

QToolButton* QtToolbar::button(std::string_view identifier) const {
    const auto* found = entry(identifier);
    return found ? found->button : nullptr;
}

} // namespace corvane::qt
