#include "qt/forms/FieldViews.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <algorithm>

#include "qt/Text.h"
#include "qt/widgets/FormatterRules.h"

namespace corvane::qt {
namespace {

using forms::Form;
using forms::Item;

QString accessibleNameOf(const Item& item) {
    if (!item.accessibleName.empty()) return fromUtf8(item.accessibleName);
    auto name = fromUtf8(forms::withoutMnemonic(item.label));
    if (name.endsWith(':')) name.chop(1);
    return item.unit.empty() ? name : name + ", " + fromUtf8(item.unit);
}

/// What fields of all kinds have.
void describe(QWidget& field, const Item& item) {
    field.setObjectName(fromUtf8(item.name));
    field.setAccessibleName(accessibleNameOf(item));
    field.setToolTip(fromUtf8(item.help));
}

void makeNarrow(QLineEdit& field) {
    constexpr int characters = 12;
    field.setMinimumWidth(0);
    field.setMaximumWidth(field.fontMetrics().averageCharWidth() * characters);
}

/// A line of text, with what belongs beside it.
class LineView final : public ItemView {
public:
    LineView(const Item& item, FormSurface& surface, QWidget& parent)
        : surface_(surface), name_(item.name), row_(new QWidget(&parent)), line_(new QLineEdit(row_)) {
        constexpr int usualWidth = 240;
        line_->setMinimumWidth(usualWidth);
        describe(*line_, item);
        if (item.kind == Item::Kind::password) line_->setEchoMode(QLineEdit::Password);
        auto* layout = new QHBoxLayout(row_);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(line_, 1);
        row_->setFocusProxy(line_);
        addNeighbours(item, *layout);
        if (auto formatter = surface.form().formatterOf(item))
            formatting_ =
                std::make_unique<FieldFormatting>(*line_, rulesOf(std::move(formatter), surface.guard()));
        show(item);
        QObject::connect(line_, &QLineEdit::textChanged, row_, [this](const QString& text) { typed(text); });
        QObject::connect(line_, &QLineEdit::editingFinished, row_, [this] { left(); });
    }

    [[nodiscard]] QWidget& row() override { return *row_; }
    [[nodiscard]] QWidget* field() override { return line_; }

    void show(const Item& item) override {
        row_->setEnabled(item.isEnabled);
        line_->setPlaceholderText(fromUtf8(item.placeholder));
        if (beside_ && item.button) showFormButton(*beside_, *item.button, surface_.form());
        if (browse_) browse_->setEnabled(item.isBrowsable);
        // A text that was no number is taken away with the value; any other is what the user may be typing.
        const bool isStale = item.kind == Item::Kind::number && item.value.isNull() &&
                             !item.isTextUnacceptable && !line_->text().isEmpty();
        if (wasShown_ && item.value == shown_ && !isStale) return;
        wasShown_ = true;
        shown_ = item.value;
        put(fromUtf8(surface_.form().textOf(item)));
    }

    void suggest(const std::vector<std::string>& values) override {
        auto* below = beside_ ? static_cast<QWidget*>(beside_) : line_;
        auto* menu = new QMenu(line_);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        for (const auto& value : values)
            menu->addAction(withoutMnemonics(fromUtf8(value)), line_,
                            [this, value] { line_->setText(fromUtf8(value)); });
        menu->popup(below->mapToGlobal(QPoint(0, below->height())));
    }

private:
    void addNeighbours(const Item& item, QHBoxLayout& layout) {
        if (item.kind == Item::Kind::number) {
            makeNarrow(*line_);
            if (!item.unit.empty()) layout.addWidget(new QLabel(fromUtf8(item.unit), row_));
            layout.addStretch();
        }
        if (item.kind == Item::Kind::file) layout.addWidget(browse_ = browseButton(item));
        if (item.button) layout.addWidget(beside_ = makeFormButton(*item.button, surface_, *row_));
    }
    QPushButton* browseButton(const Item& item) {
        auto* button = new QPushButton(QObject::tr("Br&owse…"), row_);
        button->setObjectName(fromUtf8(item.name) + "Browse");
        button->setAutoDefault(false);
        QObject::connect(button, &QPushButton::clicked, row_,
                         [this, title = accessibleNameOf(item), folder = fromUtf8(item.folder),
                          kinds = fromUtf8(item.fileKinds)] {
                             const auto path = QFileDialog::getOpenFileName(row_, title, folder, kinds);
                             if (!path.isEmpty()) line_->setText(path);
                         });
        return button;
    }
    void put(const QString& text) {
        isPutting_ = true;
        if (formatting_)
            formatting_->setText(text);
        else
            line_->setText(text);
        isPutting_ = false;
    }
    void typed(const QString& text) {
        if (isPutting_) return;
        isTyped_ = true;
        surface_.act("typing", [&](Form& form) {
            const QPointer<QWidget> here(row_);
            form.userTyped(name_, toUtf8(text));
            if (here && form.isOpen()) shown_ = form.value(name_);
        });
    }
    void left() {
        if (std::exchange(isTyped_, false))
            surface_.act("leaving a field", [this](Form& form) { form.userEntered(name_); });
    }

    FormSurface& surface_;
    std::string name_;
    QWidget* row_;
    QLineEdit* line_;
    QPushButton* beside_ = nullptr;
    QPushButton* browse_ = nullptr;
    std::unique_ptr<FieldFormatting> formatting_;
    util::Value shown_; ///< the item's value that the text stands for
    bool wasShown_ = false;
    bool isPutting_ = false;
    bool isTyped_ = false; ///< since the field was entered
};

/// A text of several lines, with word of its being left.
class TextArea final : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;
    std::function<void()> entered;

protected:
    void insertFromMimeData(const QMimeData* source) override {
        QPlainTextEdit::insertFromMimeData(source);
        if (entered) entered();
    }
    void focusOutEvent(QFocusEvent* event) override {
        QPlainTextEdit::focusOutEvent(event);
        if (entered) entered();
    }
};

class AreaView final : public ItemView {
public:
    AreaView(const Item& item, FormSurface& surface, QWidget& parent)
        : surface_(surface), name_(item.name), area_(new TextArea(&parent)) {
        constexpr int frame = 14;
        describe(*area_, item);
        area_->setTabChangesFocus(true);
        area_->setFixedHeight(area_->fontMetrics().lineSpacing() * static_cast<int>(item.lines) + frame);
        show(item);
        QObject::connect(area_, &QPlainTextEdit::textChanged, area_, [this] { typed(); });
        area_->entered = [this] {
            surface_.act("leaving a field", [this](Form& form) { form.userEntered(name_); });
        };
    }
    ~AreaView() override {
        if (area_) area_->entered = nullptr;
    }

    [[nodiscard]] QWidget& row() override { return *area_; }
    [[nodiscard]] QWidget* field() override { return area_; }
    void show(const Item& item) override {
        area_->setEnabled(item.isEnabled);
        area_->setPlaceholderText(fromUtf8(item.placeholder));
        const auto text = fromUtf8(surface_.form().textOf(item));
        if (text == area_->toPlainText()) return;
        isPutting_ = true;
        area_->setPlainText(text);
        isPutting_ = false;
    }

private:
    void typed() {
        if (isPutting_) return;
        surface_.act("typing", [this](Form& form) { form.userTyped(name_, toUtf8(area_->toPlainText())); });
    }

    FormSurface& surface_;
    std::string name_;
    QPointer<TextArea> area_;
    bool isPutting_ = false;
};

class CheckView final : public ItemView {
public:
    CheckView(const Item& item, FormSurface& surface, QWidget& parent) : box_(new QCheckBox(&parent)) {
        box_->setObjectName(fromUtf8(item.name));
        show(item);
        QObject::connect(box_, &QCheckBox::clicked, box_, [&surface, name = item.name](bool isChecked) {
            surface.act("a check box", [&](Form& form) { form.userChecked(name, isChecked); });
        });
    }
    [[nodiscard]] QWidget& row() override { return *box_; }
    [[nodiscard]] QWidget* field() override { return box_; }
    void show(const Item& item) override {
        box_->setText(fromUtf8(item.title));
        box_->setToolTip(fromUtf8(item.help));
        box_->setEnabled(item.isEnabled);
        box_->setChecked(item.value.as<util::Number>().booleanValue());
    }

private:
    QCheckBox* box_;
};

class ChoiceView final : public ItemView {
public:
    ChoiceView(const Item& item, FormSurface& surface, QWidget& parent) : box_(new QComboBox(&parent)) {
        describe(*box_, item);
        show(item);
        QObject::connect(box_, &QComboBox::currentIndexChanged, box_, [this, &surface, name = item.name] {
            if (isShowing_) return;
            const auto chosen = toUtf8(box_->currentData().toString());
            surface.act("a choice", [&](Form& form) { form.userChose(name, chosen); });
        });
    }
    [[nodiscard]] QWidget& row() override { return *box_; }
    [[nodiscard]] QWidget* field() override { return box_; }
    void show(const Item& item) override {
        isShowing_ = true;
        box_->setEnabled(item.isEnabled);
        if (choices_ != item.choices) {
            choices_ = item.choices;
            box_->clear();
            for (const auto& choice : choices_)
                box_->addItem(fromUtf8(choice.title), fromUtf8(choice.value));
        }
        // A value that isn't on offer, written by another hand, is offered as it is: it must not change
        // unasked.
        const auto value = fromUtf8(item.value.as<util::String>().text());
        if (!value.isEmpty() && box_->findData(value) < 0) box_->addItem(value, value);
        box_->setCurrentIndex(std::max(0, box_->findData(value)));
        isShowing_ = false;
    }

private:
    QComboBox* box_;
    std::vector<forms::Choice> choices_;
    bool isShowing_ = false;
};

} // namespace

std::unique_ptr<ItemView> makeLineView(const Item& item, FormSurface& surface, QWidget& parent) {
    return std::make_unique<LineView>(item, surface, parent);
}
std::unique_ptr<ItemView> makeAreaView(const Item& item, FormSurface& surface, QWidget& parent) {
    return std::make_unique<AreaView>(item, surface, parent);
}
std::unique_ptr<ItemView> makeCheckView(const Item& item, FormSurface& surface, QWidget& parent) {
    return std::make_unique<CheckView>(item, surface, parent);
}
std::unique_ptr<ItemView> makeChoiceView(const Item& item, FormSurface& surface, QWidget& parent) {
    return std::make_unique<ChoiceView>(item, surface, parent);
}

} // namespace corvane::qt
