#include "qt/adapters/QtTabView.h"

#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "qt/Text.h"

namespace corvane::qt {

QtTabView::QtTabView(QStackedWidget& pages, HandlerGuard& guard)
    : root_(&pages), pages_(&pages), guard_(guard) {
    for (int at = 0; at < pages.count(); ++at) {
        auto& page = *pages.widget(at);
        items_.push_back(std::make_shared<QtTabViewItem>(toUtf8(page.property("tabIdentifier").toString()),
                                                         page.property("tabTitle").toString(), page));
    }
    selected_ = items_.empty() ? -1 : 0;
    showSelected();
}

QtTabView::QtTabView(HandlerGuard& guard) : root_(new QWidget), pages_(nullptr), guard_(guard) {
    pages_ = new QStackedWidget(root_);
    bar_ = new QTabBar(root_);
    bar_->setObjectName("paneTabs");
    bar_->setDrawBase(false);
    bar_->setExpanding(false);
    bar_->setUsesScrollButtons(false);
    auto* layout = new QVBoxLayout(root_);
    layout->setContentsMargins(0, 16, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar_, 0, Qt::AlignHCenter);
    layout->addWidget(pages_, 1);
    QObject::connect(bar_, &QTabBar::currentChanged, &context_, [this](int index) { tabChosen(index); });
}

QtTabView::~QtTabView() {
    if (root_ && bar_ && !root_->parentWidget()) delete root_.data();
}

void QtTabView::setHidden(bool hidden) { root_->setVisible(!hidden); }

bool QtTabView::isHidden() const { return root_->isHidden(); }

toolkit::Rect QtTabView::frame() const { return frameOf(*root_); }

toolkit::Window* QtTabView::window() const { return windowOf(*root_); }

void QtTabView::setAutoresizingMask(unsigned mask) {
    const auto policy = [mask](unsigned bit) {
        return mask & bit ? QSizePolicy::Expanding : QSizePolicy::Fixed;
    };
    root_->setSizePolicy(policy(widthSizable), policy(heightSizable));
}

void QtTabView::addTabViewItem(std::shared_ptr<toolkit::TabViewItem> item) {
    auto ours = std::dynamic_pointer_cast<QtTabViewItem>(std::move(item));
    if (!ours) return;
    pages_->addWidget(&ours->page());
    items_.push_back(ours);
    if (bar_) {
        const QSignalBlocker silent(bar_);
        bar_->addTab(withoutMnemonics(ours->title()));
    }
    if (selected_ < 0) selected_ = 0;
    if (bar_ && items_.size() == 1) takeTabKeyBefore(ours->page());
    showSelected();
}

// The bar stands above the pages and was made after what is on them.
void QtTabView::takeTabKeyBefore(QWidget& page) {
    const auto takesTabKey = [](const QWidget* widget) { return widget->focusPolicy() & Qt::TabFocus; };
    for (auto* at = page.nextInFocusChain(); at != &page; at = at->nextInFocusChain()) {
        if (!page.isAncestorOf(at) || !takesTabKey(at)) continue;
        auto* before = at->previousInFocusChain();
        while (before != at && !takesTabKey(before))
            before = before->previousInFocusChain();
        QWidget::setTabOrder(before, bar_);
        return QWidget::setTabOrder(bar_, at);
    }
}

std::shared_ptr<toolkit::TabViewItem> QtTabView::tabViewItemWithIdentifier(std::string_view identifier) {
    const auto found =
        std::ranges::find(items_, identifier, [](const auto& item) { return item->identifier(); });
    return found == items_.end() ? nullptr : *found;
}

void QtTabView::removeTabViewItem(const toolkit::TabViewItem& item) {
    const auto found = std::ranges::find(items_, &item, [](const auto& held) { return held.get(); });
    if (found == items_.end()) return;
    const int at = int(found - items_.begin());
    const auto removed = *found;
    items_.erase(found);
    pages_->removeWidget(&removed->page());
    if (bar_) {
        const QSignalBlocker silent(bar_);
        bar_->removeTab(at);
    }
    const bool tookNeighboursPlace = at < selected_ || selected_ == int(items_.size());
    if (tookNeighboursPlace) --selected_;
    showSelected();
}

void QtTabView::selectTabViewItemWithIdentifier(std::string_view identifier) {
    const auto item = tabViewItemWithIdentifier(identifier);
    if (!item || item == selectedTabViewItem()) return;
    if (delegate_ && !delegate_->shouldSelectTabViewItem(*this, *item)) return;
    if (delegate_) delegate_->willSelectTabViewItem(*this, *item);
    const auto found = std::ranges::find(items_, item);
    if (found == items_.end()) return;
    selected_ = int(found - items_.begin());
    showSelected();
    if (delegate_) delegate_->didSelectTabViewItem(*this, *item);
}

std::shared_ptr<toolkit::TabViewItem> QtTabView::selectedTabViewItem() const {
    return selected_ < 0 ? nullptr : items_[std::size_t(selected_)];
}

// The bar has already moved its mark; it goes back when the program refuses or fails.
void QtTabView::tabChosen(int index) {
    if (index < 0 || index >= int(items_.size())) return;
    const auto identifier = items_[std::size_t(index)]->identifier();
    showSelected();
    guard_.run("a tab", [&] { selectTabViewItemWithIdentifier(identifier); });
}

void QtTabView::showSelected() {
    if (selected_ < 0) return;
    pages_->setCurrentWidget(&items_[std::size_t(selected_)]->page());
    if (!bar_) return;
    const QSignalBlocker silent(bar_);
    bar_->setCurrentIndex(selected_);
}

} // namespace corvane::qt
