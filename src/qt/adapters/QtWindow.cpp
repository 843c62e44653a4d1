#include "qt/adapters/QtWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>
#include <cmath>

#include "qt/Text.h"
#include "qt/adapters/QtToolbar.h"
#include "qt/adapters/QtView.h"
#include "qt/look/ScreenFit.h"
#include "qt/platform/QtStateCoder.h"
#include "qt/widgets/SheetOverlay.h"

namespace corvane::qt {

namespace {

constexpr auto windowProperty = "corvaneWindow";
constexpr auto frameGroup = "WindowFrames";

/// y of the primary screen's lower edge, from which the program counts upwards.
int screenBottom() {
    const auto* screen = QGuiApplication::primaryScreen();
    return screen ? screen->geometry().bottom() + 1 : 0;
}

QSize rounded(const toolkit::Size& size) {
    const auto length = [](double value) {
        return int(std::clamp(std::lround(value), 0L, long(QWIDGETSIZE_MAX)));
    };
    return {length(size.width), length(size.height)};
}

/// Without a screen there is nothing to be in front of, and Qt says so on standard error each time.
void bringToFront(QWidget& shell) {
    if (QGuiApplication::platformName() != "offscreen") shell.raise();
}

QString number(double value) { return QString::number(value, 'g', 12); }

} // namespace

/// Sees the window's close button and keys before the window does.
class QtWindow::EventFilter final : public QObject {
public:
    explicit EventFilter(QtWindow& window) : window_(window) {}
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != &window_.shell_ || event->type() != QEvent::Close || window_.closing_) return false;
        const bool closes = window_.userMayClose();
        event->setAccepted(closes);
        return !closes;
    }

private:
    QtWindow& window_;
};

QtWindow::QtWindow(QWidget& shell, QWidget& content, HandlerGuard& guard, SettingsFile& settings)
    : shell_(shell), content_(content), guard_(guard), settings_(settings),
      filter_(std::make_unique<EventFilter>(*this)) {
    shell.setProperty(windowProperty, QVariant::fromValue(static_cast<void*>(this)));
    shell.installEventFilter(filter_.get());
}

QtWindow::~QtWindow() {
    if (host_) host_->detachSheet(shell_);
    for (auto& each : running_)
        each.sheet->host_ = nullptr;
    sheets_.clear();
    shell_.setProperty(windowProperty, QVariant());
}

// From the inside out, because a sheet's contents are inside another window.
QtWindow* QtWindow::of(const QWidget& widget) {
    for (const auto* at = &widget; at; at = at->parentWidget())
        if (auto* found = static_cast<QtWindow*>(at->property(windowProperty).value<void*>())) return found;
    return nullptr;
}

void QtWindow::setTitle(std::string_view title) {
    // The place of the mark of unsaved changes; a title's own brackets and stars stay what they are.
    shell_.setWindowTitle(fromUtf8(title).replace("[*]", "[*][*]") + "[*]");
}

std::string QtWindow::title() const {
    auto title = shell_.windowTitle();
    if (title.endsWith("[*]")) title.chop(3);
    return toUtf8(title.replace("[*][*]", "[*]"));
}

void QtWindow::setDocumentEdited(bool edited) { shell_.setWindowModified(edited); }

bool QtWindow::isDocumentEdited() const { return shell_.isWindowModified(); }

double QtWindow::heightAbove() const { return toolbar_ ? heightAboveContentWithToolbar : heightAboveContent; }

toolkit::Rect QtWindow::frame() const {
    const double height = content_.height() + heightAbove();
    const auto topLeft = shell_.pos();
    return {{double(topLeft.x()), screenBottom() - topLeft.y() - height}, {double(content_.width()), height}};
}

toolkit::Rect QtWindow::frameRectForContentRect(const toolkit::Rect& content) const {
    return {content.origin, {content.size.width, content.size.height + heightAbove()}};
}

void QtWindow::setFrame(const toolkit::Rect& frame, bool, bool) {
    resizeContent(rounded({frame.size.width, frame.size.height - heightAbove()}));
    setFrameTopLeftPoint({frame.origin.x, frame.origin.y + frame.size.height});
}

void QtWindow::setFrameTopLeftPoint(const toolkit::Point& point) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) return;
    const auto bounded = [](double value) { return int(std::lround(std::clamp(value, -1e6, 1e6))); };
    moveTopLeft({bounded(point.x), bounded(screenBottom() - point.y)});
}

void QtWindow::setFrameOrigin(const toolkit::Point& origin) {
    setFrameTopLeftPoint({origin.x, origin.y + frame().size.height});
}

// Wholly onto the screen that it is on, as far as it has room there; onto the first one when it is on none.
void QtWindow::moveTopLeft(QPoint point) {
    const QRect wanted(point, shell_.size() + decoration());
    const QScreen* screen = QGuiApplication::primaryScreen();
    for (const auto* each : QGuiApplication::screens())
        if (each->geometry().contains(wanted.center())) screen = each;
    if (screen && fitsScreen()) {
        const auto area = screen->availableGeometry();
        const auto last = [](int start, int length, int size) {
            return std::max(start, start + length - size);
        };
        point.setX(std::clamp(point.x(), area.left(), last(area.left(), area.width(), wanted.width())));
        point.setY(std::clamp(point.y(), area.top(), last(area.top(), area.height(), wanted.height())));
    }
    shell_.move(point);
}

/// What the window system puts around the window.
QSize QtWindow::decoration() const { return shell_.frameGeometry().size() - shell_.size(); }

/// The largest size that the window can have on its screen.
QSize QtWindow::room() const {
    const auto* screen = shell_.screen();
    return screen && fitsScreen() ? screen->availableGeometry().size() - decoration()
                                  : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
}

void QtWindow::setContentMinSize(const toolkit::Size& size) {
    minimum_ = rounded(size);
    applySizeLimits();
}

void QtWindow::setContentMaxSize(const toolkit::Size& size) {
    maximum_ = rounded(size);
    applySizeLimits();
}

int QtWindow::heightOfBars() const {
    const auto* main = qobject_cast<const QMainWindow*>(&shell_);
    if (!main) return shell_.height() - content_.height();
    const auto* menu = qobject_cast<const QMenuBar*>(main->menuWidget());
    const bool menuInside = menu && !menu->isHidden() && !menu->isNativeMenuBar();
    const int menuHeight = menuInside ? menu->sizeHint().height() : 0;
    const bool toolbarShown = toolbar_ && !toolbar_->isHidden();
    const auto* foot = main->findChild<const QStatusBar*>(QString(), Qt::FindDirectChildrenOnly);
    const int footHeight = foot && !foot->isHidden() ? foot->sizeHint().height() : 0;
    return menuHeight + footHeight + (toolbarShown ? toolbar_->parentWidget()->sizeHint().height() : 0);
}

// The larger limit first: Qt moves one limit when the other passes it.
void QtWindow::applySizeLimits() {
    const QSize bars(0, heightOfBars());
    const auto bounded = [](QSize size) { return size.boundedTo({QWIDGETSIZE_MAX, QWIDGETSIZE_MAX}); };
    shell_.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    // On a screen that is too small for a pane, the pane gives way and not its buttons.
    shell_.setMinimumSize(bounded(minimum_ + bars).boundedTo(room()));
    const bool fixed = maximum_ == minimum_;
    const auto largest = bounded(maximum_.expandedTo(minimum_) + bars);
    shell_.setMaximumSize(fixed ? largest.boundedTo(room()) : largest);
    if (auto* layout = shell_.layout()) layout->activate();
}

// The program resizes first and sets the limits of the new size afterwards: those of the old size give way.
void QtWindow::resizeContent(QSize size) {
    if (size.width() > maximum_.width() || size.height() > maximum_.height())
        maximum_ = {QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
    minimum_ = minimum_.boundedTo(size);
    applySizeLimits();
    shell_.resize((size + QSize(0, heightOfBars())).boundedTo(room()));
    if (auto* layout = shell_.layout()) layout->activate();
}

void QtWindow::center() {
    const auto* screen = shell_.screen();
    if (!screen) return;
    const auto area = screen->availableGeometry();
    const auto size = shell_.size();
    // A little above the middle looks centred.
    shell_.move(area.x() + (area.width() - size.width()) / 2, area.y() + (area.height() - size.height()) / 3);
}

void QtWindow::setFrameAutosaveName(std::string_view name) {
    autosaveName_ = name;
    const auto kept = settings_.read(frameGroup, name);
    const auto numbers = fromUtf8(kept.value_or("")).split(' ');
    if (numbers.size() != 4) return;
    const QSize size(numbers[2].toInt(), numbers[3].toInt() - int(heightAbove()));
    if (size.width() > 0 && size.height() > 0) shell_.resize(size.expandedTo(shell_.minimumSizeHint()));
}

void QtWindow::saveFrameUsingName(std::string_view name) {
    const auto place = frame();
    const QStringList numbers{number(place.origin.x), number(place.origin.y), number(place.size.width),
                              number(place.size.height)};
    settings_.write(frameGroup, name, toUtf8(numbers.join(' ')));
}

void QtWindow::setToolbar(toolkit::Toolbar& toolbar) {
    auto* ours = dynamic_cast<QtToolbar*>(&toolbar);
    auto* main = qobject_cast<QMainWindow*>(&shell_);
    if (!ours || !main || toolbar_) return;
    const QSize content = content_.size();
    toolbar_ = &ours->widget();
    auto* bar = new QToolBar(main);
    bar->setObjectName("toolbarArea");
    bar->setMovable(false);
    bar->setFloatable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->toggleViewAction()->setVisible(false);
    bar->addWidget(toolbar_);
    main->setContextMenuPolicy(Qt::NoContextMenu);
    main->addToolBar(Qt::TopToolBarArea, bar);
    resizeContent(content);
}

void QtWindow::orderFront() {
    if (host_) return;
    shell_.setAttribute(Qt::WA_ShowWithoutActivating, true);
    shell_.show();
    bringToFront(shell_);
}

void QtWindow::makeKeyAndOrderFront() {
    if (host_) return;
    shell_.setAttribute(Qt::WA_ShowWithoutActivating, false);
    shell_.show();
    bringToFront(shell_);
    shell_.activateWindow();
}

void QtWindow::orderOut() {
    if (!autosaveName_.empty()) saveFrameUsingName(autosaveName_);
    if (host_) return host_->detachSheet(shell_);
    shell_.hide();
}

void QtWindow::close() {
    if (closing_) return;
    closing_ = true;
    willClose();
    if (host_) host_->detachSheet(shell_);
    shell_.close();
    closing_ = false;
}

bool QtWindow::isVisible() const { return !shell_.isHidden() && (shell_.isWindow() || host_); }

void QtWindow::makeFirstResponder(toolkit::View* view) {
    auto* widget = widgetOf(view);
    if (!widget) widget = &shell_;
    if (!sheets_.empty())
        focusAfterSheet_ = widget;
    else
        widget->setFocus(Qt::OtherFocusReason);
}

void QtWindow::beginSheet(toolkit::Window& sheet,
                          std::function<void(toolkit::Window& sheet, int returnCode)> ended) {
    auto* ours = dynamic_cast<QtWindow*>(&sheet);
    if (!ours || ours->host_) return;
    ours->host_ = this;
    running_.push_back({ours, std::move(ended)});
    attachSheet(ours->shell_);
}

void QtWindow::endSheet(toolkit::Window& sheet, int returnCode) {
    const auto found = std::ranges::find(running_, &sheet, &RunningSheet::sheet);
    if (found == running_.end()) return;
    const auto ended = std::move(found->ended);
    running_.erase(found);
    sheetEnded(static_cast<QtWindow&>(sheet).shell_);
    if (ended) ended(sheet, returnCode);
}

void QtWindow::attachSheet(QWidget& panel) {
    if (sheets_.empty()) focusAfterSheet_ = shell_.focusWidget();
    sheets_.push_back(std::make_unique<SheetOverlay>(shell_, content_, panel));
    blockWhileSheetsRun();
    sheets_.back()->takeFocus();
}

void QtWindow::detachSheet(QWidget& panel) {
    const auto found = std::ranges::find(sheets_, &panel, [](const auto& each) { return each->panel(); });
    if (found == sheets_.end()) return;
    if (auto* window = of(panel); window && window->host_ == this) {
        window->host_ = nullptr;
        std::erase_if(running_, [&](const RunningSheet& each) { return each.sheet == window; });
    }
    // Focus mustn't wander through the content while the panel goes away.
    const auto overlay = std::move(*found);
    sheets_.erase(found);
    blockWhileSheetsRun();
    if (!sheets_.empty())
        sheets_.back()->takeFocus();
    else if (focusAfterSheet_)
        focusAfterSheet_->setFocus(Qt::OtherFocusReason);
}

void QtWindow::sheetEnded(const QWidget& panel) {
    for (const auto& each : sheets_)
        if (each->panel() == &panel) each->ended = true;
}

bool QtWindow::hasAttachedSheet() const {
    return std::ranges::any_of(sheets_, [](const auto& each) { return !each->ended; });
}

void QtWindow::blockWhileSheetsRun() {
    const bool free = sheets_.empty();
    content_.setEnabled(free);
    if (toolbar_) toolbar_->setEnabled(free);
    for (const auto& each : sheets_)
        each->setEnabled(each == sheets_.back());
}

bool QtWindow::userMayClose() {
    if (hasAttachedSheet()) {
        QApplication::beep();
        sheets_.back()->takeFocus();
        return false;
    }
    const bool may = !delegate_ || guard_.answer("closing a window", false,
                                                 [this] { return delegate_->windowShouldClose(*this); });
    if (may) guard_.run("closing a window", [this] { willClose(); });
    return may;
}

void QtWindow::willClose() {
    saveState();
    if (delegate_) delegate_->windowWillClose(*this);
}

void QtWindow::saveState() {
    if (!delegate_) return;
    QtStateCoder coder(settings_);
    delegate_->willEncodeRestorableState(*this, coder);
}

void QtWindow::restoreState() {
    if (!delegate_) return;
    const QtStateCoder coder(settings_);
    delegate_->didDecodeRestorableState(*this, coder);
}

} // namespace corvane::qt
