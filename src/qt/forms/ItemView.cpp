#include "qt/forms/ItemView.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/Text.h"
#include "qt/forms/FieldViews.h"
#include "qt/forms/FormList.h"
#include "qt/forms/FormTexts.h"
#include "qt/widgets/Announcement.h"

namespace corvane::qt {
namespace {

using forms::Form;
using forms::Item;
using forms::Step;

class ParagraphView final : public ItemView {
public:
    ParagraphView(const Item& item, QWidget& parent)
        : isAnnounced_(item.isAnnounced), label_(formParagraph("", item.style, parent)) {
        label_->setObjectName(fromUtf8(item.name));
        if (isAnnounced_) makeAnnouncer(*label_);
        show(item);
    }
    [[nodiscard]] QWidget& row() override { return *label_; }
    void show(const Item& item) override {
        const auto text = fromUtf8(item.text);
        if (text == label_->text()) return;
        label_->setText(text);
        if (isAnnounced_) announce(*label_, text);
    }

private:
    bool isAnnounced_;
    QLabel* label_;
};

/// A list with its buttons beside it.
class ListView final : public ItemView {
public:
    ListView(const Item& item, FormSurface& surface, QWidget& parent)
        : surface_(surface), name_(item.name), row_(new QWidget(&parent)), list_(new FormList(row_)) {
        auto* layout = new QHBoxLayout(row_);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(12);
        list_->setObjectName(fromUtf8(item.name));
        list_->setAccessibleName(
            fromUtf8(item.accessibleName.empty() ? forms::withoutMnemonic(item.label) : item.accessibleName));
        layout->addWidget(list_, 1);
        if (!item.buttons.empty()) layout->addLayout(buttonColumn(item));
        row_->setFocusProxy(list_);
        show(item);
        QObject::connect(list_, &QListWidget::itemSelectionChanged, row_, [this] { selected(); });
    }
    [[nodiscard]] QWidget& row() override { return *row_; }
    [[nodiscard]] QWidget* field() override { return list_; }

    void show(const Item& item) override {
        isShowing_ = true;
        list_->setEmptyMessage(fromUtf8(item.emptyMessage));
        if (!wasShown_ || rows_ != item.rows) {
            wasShown_ = true;
            rows_ = item.rows;
            list_->setRows(rows_);
            // A button that was pressed for a row passes the keyboard on.
            if (row_->isAncestorOf(row_->window()->focusWidget())) list_->setFocus();
        }
        std::vector<std::int64_t> chosen;
        for (const auto& each : item.value.as<util::Array>().elements())
            chosen.push_back(each.as<util::Number>().integerValue());
        if (chosen != list_->selection()) list_->select(chosen);
        isShowing_ = false;
    }

private:
    QLayout* buttonColumn(const Item& item) {
        constexpr int room = 6;
        auto* column = new QVBoxLayout;
        for (const auto& button : item.buttons) {
            if (button.isSeparated) column->addSpacing(room);
            column->addWidget(makeFormButton(button, surface_, *row_));
            connectKey(button);
        }
        column->addStretch();
        return column;
    }
    void connectKey(const forms::Button& button) {
        const auto press = [this, name = button.name] { surface_.press(name); };
        if (button.key == forms::Button::Key::activate)
            QObject::connect(list_, &QListWidget::itemActivated, row_, press);
        if (button.key == forms::Button::Key::remove) list_->removeRequested = press;
    }
    void selected() {
        if (isShowing_) return;
        surface_.act("a selection", [this](Form& form) { form.userSelected(name_, list_->selection()); });
    }

    FormSurface& surface_;
    std::string name_;
    QWidget* row_;
    FormList* list_;
    std::vector<forms::Row> rows_;
    bool wasShown_ = false;
    bool isShowing_ = false;
};

struct Mark {
    const char* sign;
    const char* meaning; ///< for those who don't see the sign
};

Mark markOf(Step::State state) {
    switch (state) {
    case Step::State::running:
        return {"…", "in progress"};
    case Step::State::done:
        return {"✓", "succeeded"};
    case Step::State::failed:
        return {"✗", "failed"};
    case Step::State::skipped:
        return {"–", "skipped"};
    case Step::State::waiting:
        break;
    }
    return {"○", "not yet tried"};
}

class StepsView final : public ItemView {
public:
    StepsView(const Item& item, QWidget& parent) : row_(new QWidget(&parent)), grid_(new QGridLayout(row_)) {
        row_->setObjectName(fromUtf8(item.name));
        grid_->setContentsMargins(0, 0, 0, 0);
        grid_->setColumnStretch(2, 1);
        grid_->setVerticalSpacing(8);
        show(item);
    }
    [[nodiscard]] QWidget& row() override { return *row_; }
    void show(const Item& item) override {
        for (std::size_t i = 0; i < item.steps.size(); ++i)
            show(item.steps[i], lineAt(i));
        for (std::size_t i = 0; i < lines_.size(); ++i)
            for (auto* label : {lines_[i].mark, lines_[i].title, lines_[i].detail})
                label->setVisible(i < item.steps.size());
    }

private:
    struct Line {
        QLabel* mark;
        QLabel* title;
        QLabel* detail;
    };
    Line& lineAt(std::size_t index) {
        while (lines_.size() <= index) {
            Line line{new QLabel(row_), new QLabel(row_), formParagraph("", Item::Style::plain, *row_)};
            const int number = static_cast<int>(lines_.size());
            line.mark->setFixedWidth(18);
            line.mark->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
            line.title->setAlignment(Qt::AlignTop | Qt::AlignLeft);
            line.title->setTextFormat(Qt::PlainText);
            grid_->addWidget(line.mark, number, 0);
            grid_->addWidget(line.title, number, 1);
            grid_->addWidget(line.detail, number, 2);
            lines_.push_back(line);
        }
        return lines_[index];
    }
    static void show(const Step& step, Line& line) {
        const auto mark = markOf(step.state);
        line.mark->setText(QString::fromUtf8(mark.sign));
        line.mark->setAccessibleName(QString("%1: %2").arg(fromUtf8(step.title), mark.meaning));
        line.title->setText(fromUtf8(step.title));
        line.detail->setText(breakable(fromUtf8(step.detail)));
        auto font = line.title->font();
        font.setBold(step.state == Step::State::running || step.state == Step::State::failed);
        line.title->setFont(font);
        setAlarming(*line.mark, step.state == Step::State::failed);
        const bool isQuiet = step.state == Step::State::waiting || step.state == Step::State::skipped;
        line.title->setEnabled(!isQuiet);
        line.mark->setEnabled(!isQuiet);
    }

    QWidget* row_;
    QGridLayout* grid_;
    std::vector<Line> lines_;
};

class ProgressView final : public ItemView {
public:
    ProgressView(const Item& item, QWidget& parent) : bar_(new QProgressBar(&parent)) {
        bar_->setObjectName(fromUtf8(item.name));
        bar_->setTextVisible(false);
        bar_->setAccessibleName(fromUtf8(item.accessibleName));
        show(item);
    }
    [[nodiscard]] QWidget& row() override { return *bar_; }
    void show(const Item& item) override {
        constexpr int whole = 1000;
        const auto part = item.value.as<util::Number>();
        bar_->setRange(0, part.isNull() ? 0 : whole);
        if (!part.isNull()) bar_->setValue(static_cast<int>(part.doubleValue() * whole));
    }

private:
    QProgressBar* bar_;
};

/// The only text with marks in it, which are our own.
class ResultView final : public ItemView {
public:
    ResultView(const Item& item, QWidget& parent) : label_(formParagraph("", Item::Style::plain, parent)) {
        label_->setObjectName(fromUtf8(item.name));
        label_->setTextFormat(Qt::RichText);
        label_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        makeAnnouncer(*label_);
        show(item);
    }
    [[nodiscard]] QWidget& row() override { return *label_; }
    void show(const Item& item) override {
        QString message;
        QStringList said;
        for (const auto& paragraph : item.paragraphs) {
            said << fromUtf8(paragraph);
            const auto shown = breakable(said.back()).toHtmlEscaped();
            message +=
                message.isEmpty() ? "<b>" + shown + "</b>" : "<p style='margin-top:6px'>" + shown + "</p>";
        }
        if (message == label_->text()) return;
        label_->setText(message);
        announce(*label_, said.join("\n"));
    }

private:
    QLabel* label_;
};

class ButtonView final : public ItemView {
public:
    ButtonView(const Item& item, FormSurface& surface, QWidget& parent) : button_(new QPushButton(&parent)) {
        button_->setObjectName(fromUtf8(item.name));
        button_->setAutoDefault(false);
        show(item);
        QObject::connect(button_, &QPushButton::clicked, button_,
                         [&surface, name = item.name] { surface.press(name); });
    }
    [[nodiscard]] QWidget& row() override { return *button_; }
    [[nodiscard]] QWidget* field() override { return button_; }
    void show(const Item& item) override {
        button_->setText(fromUtf8(item.title));
        button_->setToolTip(fromUtf8(item.help));
        button_->setEnabled(item.isEnabled);
    }

private:
    QPushButton* button_;
};

} // namespace

QPushButton* makeFormButton(const forms::Button& button, FormSurface& surface, QWidget& parent) {
    auto* made = new QPushButton(&parent);
    made->setObjectName(fromUtf8(button.name));
    made->setAutoDefault(false);
    showFormButton(*made, button, surface.form());
    QObject::connect(made, &QPushButton::clicked, made,
                     [&surface, name = button.name] { surface.press(name); });
    return made;
}

void showFormButton(QPushButton& widget, const forms::Button& button, const Form& form) {
    widget.setText(fromUtf8(button.title));
    widget.setToolTip(fromUtf8(button.help));
    widget.setEnabled(form.canPress(button));
}

std::unique_ptr<ItemView> makeItemView(const Item& item, FormSurface& surface, QWidget& parent) {
    switch (item.kind) {
    case Item::Kind::text:
        return item.lines > 1 ? makeAreaView(item, surface, parent) : makeLineView(item, surface, parent);
    case Item::Kind::number:
    case Item::Kind::password:
    case Item::Kind::file:
        return makeLineView(item, surface, parent);
    case Item::Kind::check:
        return makeCheckView(item, surface, parent);
    case Item::Kind::choice:
        return makeChoiceView(item, surface, parent);
    case Item::Kind::list:
        return std::make_unique<ListView>(item, surface, parent);
    case Item::Kind::steps:
        return std::make_unique<StepsView>(item, parent);
    case Item::Kind::progress:
        return std::make_unique<ProgressView>(item, parent);
    case Item::Kind::result:
        return std::make_unique<ResultView>(item, parent);
    case Item::Kind::button:
        return std::make_unique<ButtonView>(item, surface, parent);
    default:
        return std::make_unique<ParagraphView>(item, parent);
    }
}

} // namespace corvane::qt
