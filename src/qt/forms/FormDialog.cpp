#include "qt/forms/FormDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "qt/Text.h"
#include "qt/forms/FormRows.h"
#include "qt/forms/FormTexts.h"
#include "qt/widgets/Announcement.h"
#include "qt/widgets/GrowingArea.h"

namespace corvane::qt {
namespace {

using forms::Button;
using forms::Item;

constexpr int usualWidth = 540; // points
constexpr int spacing = 12;
constexpr int spacingBesideList = 10;

bool hasLabel(const Item& item) { return !item.label.empty() && item.kind != Item::Kind::list; }

/// Hints and warnings belong to the field above them.
bool isRemark(const Item& item) {
    return item.kind == Item::Kind::paragraph && item.style != Item::Style::plain;
}

bool isOfKind(const std::vector<Item>& items, Item::Kind kind) {
    return std::ranges::any_of(items, [kind](const Item& item) { return item.kind == kind; });
}

QVBoxLayout* columnIn(QWidget& parent) {
    auto* column = new QVBoxLayout(&parent);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    return column;
}

QDialogButtonBox::ButtonRole roleOf(Button::Role role) {
    if (role == Button::Role::accept) return QDialogButtonBox::AcceptRole;
    return role == Button::Role::cancel ? QDialogButtonBox::RejectRole : QDialogButtonBox::ActionRole;
}

} // namespace

FormDialog::FormDialog(forms::Form& form, HandlerGuard& guard, QWidget* parent)
    : QDialog(parent), form_(&form), guard_(guard), leastHeight_(form.description().height) {
    setObjectName(fromUtf8(form.description().name));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    build();
    showTitle();
    focusFirst();
}

// Fields lose the keyboard while the window is destroyed with the one that it belongs to.
FormDialog::~FormDialog() {
    if (auto* form = std::exchange(form_, nullptr)) form->windowWentAway();
}

void FormDialog::letGo() {
    form_ = nullptr;
    // What was opened in front of this window, in its own handlers, stays.
    for (auto* each : findChildren<QDialog*>(Qt::FindDirectChildrenOnly)) {
        const bool isShown = each->isVisible();
        each->setParent(parentWidget(), each->windowFlags());
        if (isShown) each->show();
    }
    hide();
    deleteLater();
}

void FormDialog::build() {
    const auto& description = form_->description();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 16);
    layout->setSpacing(spacing);
    layout->addWidget(heading_ = formHeading("", *this));
    hasList_ = isOfKind(description.items, Item::Kind::list);
    if (hasList_) layout->setSpacing(spacingBesideList);
    auto* below = new QVBoxLayout;
    below->setSpacing(spacing);
    if (hasList_) {
        Place place{this, layout};
        for (const auto& item : description.items)
            add(item, place, *below);
    } else {
        auto* fields = new QWidget(this);
        Place place{fields, columnIn(*fields)};
        for (const auto& item : description.items)
            add(item, place, *below);
        place.column->addStretch();
        layout->addWidget(area_ = new GrowingArea(fields, this), 1);
        area_->setObjectName("formFields");
    }
    layout->addLayout(below); // always in sight, whatever the fields need
    problem_ = formParagraph("", Item::Style::warning, *this);
    problem_->setObjectName("problem");
    makeAnnouncer(*problem_);
    problem_->hide();
    layout->addWidget(problem_);
    layout->addWidget(buttonRow());
    const int width = description.width > 0 ? description.width : usualWidth;
    setMinimumWidth(std::min(width, usualWidth));
    resize(width, std::min(std::max(leastHeight_, 1), heightOnScreen(*this)));
    fitHeight();
}

void FormDialog::add(const Item& item, Place& place, QVBoxLayout& below) {
    if (item.kind == Item::Kind::group) return addGroup(item, place, below);
    Shown shown{makeItemView(item, *this, *place.parent), nullptr};
    if (item.kind == Item::Kind::result)
        below.addWidget(&shown.view->row());
    else
        addRow(item, *shown.view, place, shown);
    if (!item.enterPresses.empty() && shown.view->field() != nullptr)
        enterPresses_[shown.view->field()] = item.enterPresses;
    setShown(item, shown);
    item.name.empty() ? nameless_.push_back(std::move(shown))
                      : void(items_.emplace(item.name, std::move(shown)));
}

void FormDialog::addRow(const Item& item, ItemView& view, Place& place, Shown& shown) {
    const bool inColumns = hasLabel(item) || (isRemark(item) && place.form != nullptr);
    if (!inColumns) {
        place.form = nullptr;
        place.column->addWidget(&view.row(), item.kind == Item::Kind::list ? 1 : 0);
        return;
    }
    if (place.form == nullptr) {
        place.form = new FormRows;
        place.column->addLayout(place.form);
    }
    place.form->add(fromUtf8(item.label), view.row(), *place.parent);
    shown.form = place.form;
}

void FormDialog::addGroup(const Item& item, Place& place, QVBoxLayout& below) {
    constexpr int indentation = 16;
    place.form = nullptr;
    Group group{item.name, new QToolButton(place.parent), new QWidget(place.parent), {}};
    group.title->setObjectName(fromUtf8(item.name));
    group.title->setText(fromUtf8(item.title));
    group.title->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    group.title->setAutoRaise(true);
    place.column->addWidget(group.title);
    place.column->addWidget(group.content);
    Place inside{group.content, columnIn(*group.content)};
    inside.column->setContentsMargins(indentation, 0, 0, 0);
    for (const auto& each : item.items) {
        add(each, inside, below);
        group.members.push_back(each.name);
    }
    const auto fold = [this, name = item.name, content = group.content] {
        setFolded(name, !content->isHidden());
    };
    connect(group.title, &QToolButton::clicked, this, fold);
    groups_.push_back(std::move(group));
    showGroup(item);
}

QWidget* FormDialog::buttonRow() {
    auto* box = new QDialogButtonBox(this);
    for (const auto& button : form_->description().buttons) {
        auto* made = makeFormButton(button, *this, *box);
        box->addButton(made, roleOf(button.role));
        const bool isDefault = button.isDefault || button.role == Button::Role::accept;
        made->setAutoDefault(isDefault);
        made->setDefault(isDefault);
    }
    return box;
}

void FormDialog::act(const char* gesture, const std::function<void(forms::Form&)>& report) {
    guard_.run(gesture, [&] {
        if (form_ == nullptr) return;
        const auto held = form_->shared_from_this();
        report(*held);
    });
}

void FormDialog::press(const std::string& buttonName) {
    act("a button", [&](forms::Form& form) {
        if (form.copiesReport(buttonName)) QApplication::clipboard()->setText(fromUtf8(form.report()));
        form.userPressed(buttonName);
    });
}

void FormDialog::reject() {
    act("closing a form", [](forms::Form& form) { form.userDismissed(); });
}

// Enter in some fields presses a button of theirs, and never the window's default one.
void FormDialog::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const auto found = enterPresses_.find(focusWidget());
    if (!isEnter || found == enterPresses_.end()) return QDialog::keyPressEvent(event);
    press(found->second);
}

// What the fields need is only known once they have their fonts and their width.
void FormDialog::showEvent(QShowEvent* event) {
    fitHeight();
    QDialog::showEvent(event);
}

template <typename Visit>
void FormDialog::forEachButton(Visit visit) {
    const std::function<void(const std::vector<Item>&)> walk = [&](const std::vector<Item>& items) {
        for (const auto& item : items) {
            if (item.button) visit(*item.button);
            for (const auto& button : item.buttons)
                visit(button);
            walk(item.items);
        }
    };
    walk(form_->description().items);
    for (const auto& button : form_->description().buttons)
        visit(button);
}

void FormDialog::showButtons() {
    forEachButton([this](const Button& button) {
        auto* widget = findChild<QPushButton*>(fromUtf8(button.name));
        if (widget == nullptr) return;
        showFormButton(*widget, button, *form_);
        if (button.isDefault) widget->setDefault(true);
    });
}

void FormDialog::showTitle() {
    const auto title = fromUtf8(form_->description().title);
    setWindowTitle(title);
    heading_->setText(title);
}

void FormDialog::setShown(const Item& item, Shown& shown) {
    if (shown.form != nullptr)
        shown.form->setShown(shown.view->row(), item.isVisible);
    else
        shown.view->row().setVisible(item.isVisible);
}

void FormDialog::showItem(const Item& item) {
    if (item.kind == Item::Kind::group) return showGroup(item);
    const auto found = items_.find(item.name);
    if (found == items_.end()) return;
    found->second.view->show(item);
    setShown(item, found->second);
    fitHeight();
}

void FormDialog::showGroup(const Item& item) {
    const auto group = std::ranges::find(groups_, item.name, &Group::name);
    if (group == groups_.end()) return;
    group->title->setText(fromUtf8(item.title));
    group->title->setVisible(item.isVisible);
    for (auto* each : {static_cast<QWidget*>(group->title), group->content})
        each->setEnabled(item.isEnabled);
    setFolded(item.name, item.isFolded);
    if (!item.isVisible) group->content->hide();
    fitHeight();
}

void FormDialog::setFolded(const std::string& groupName, bool folded) {
    const auto group = std::ranges::find(groups_, groupName, &Group::name);
    if (group == groups_.end()) return;
    group->title->setArrowType(folded ? Qt::RightArrow : Qt::DownArrow);
    group->content->setVisible(!folded);
    form_->userFolded(groupName, folded);
    fitHeight();
}

void FormDialog::unfoldAround(const std::string& itemName) {
    for (const auto& group : groups_)
        if (std::ranges::find(group.members, itemName) != group.members.end()) setFolded(group.name, false);
}

void FormDialog::showProblem(const std::string& itemName, const std::string& text) {
    const auto shown = fromUtf8(text);
    if (!shown.isEmpty()) {
        unfoldAround(itemName);
        const auto found = items_.find(itemName);
        auto* field = found == items_.end() ? nullptr : found->second.view->field();
        if (field != nullptr) field->setFocus();
        if (field != nullptr && area_ != nullptr) area_->ensureWidgetVisible(field);
    }
    problem_->setText(shown);
    announce(*problem_, shown);
    problem_->setVisible(!shown.isEmpty());
    fitHeight();
}

void FormDialog::suggest(const std::string& itemName, const std::vector<std::string>& values) {
    const auto found = items_.find(itemName);
    if (found != items_.end()) found->second.view->suggest(values);
}

// A list is what a window is about; else the first field.
void FormDialog::focusFirst() {
    QWidget* first = nullptr;
    for (const auto& item : form_->description().items) {
        const auto found = items_.find(item.name);
        auto* field = found == items_.end() ? nullptr : found->second.view->field();
        if (field == nullptr || !item.isVisible || !item.isEnabled) continue;
        if (first == nullptr || item.kind == Item::Kind::list) first = field;
        if (item.kind == Item::Kind::list) break;
    }
    if (first != nullptr) first->setFocus();
}

// Texts that wrap come and go: nothing beside them may be squeezed.
void FormDialog::fitHeight() {
    if (layout() == nullptr || problem_ == nullptr) return;
    const bool mayShrink = leastHeight_ == 0;
    if (area_ != nullptr) return qt::fitHeight(*this, *area_, mayShrink);
    layout()->activate();
    const int wanted = std::max(height(), layout()->totalHeightForWidth(width()));
    resize(width(), std::min(wanted, heightOnScreen(*this)));
}

} // namespace corvane::qt
