#include "qt/adapters/QtApplication.h"

#include <QCloseEvent>
#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/KeyEvents.h"
#include "qt/Text.h"
#include "qt/adapters/QtWindow.h"
#include "views/PositioningAdditions.h"

namespace corvane::qt {

/// Offers each key stroke once. Qt asks first whether anybody wants the key more than a menu shortcut does,
/// then sends the key itself, each time to the window and from there on to the control that has the focus.
class QtApplication::EventFilter final : public QObject {
public:
    explicit EventFilter(QtApplication& application) : owner_(application) {}

    bool eventFilter(QObject*, QEvent* event) override {
        const auto type = event->type();
        const bool isKey =
            type == QEvent::ShortcutOverride || type == QEvent::KeyPress || type == QEvent::KeyRelease;
        return isKey && owner_.sendEvent && offer(static_cast<QKeyEvent&>(*event));
    }

private:
    bool offer(QKeyEvent& event) {
        const Stroke stroke{event.key(), event.modifiers(), event.timestamp(),
                            event.type() == QEvent::KeyRelease};
        const bool announced = event.type() == QEvent::ShortcutOverride;
        const bool again = stroke == last_ && !(announced && lastWasPressed_);
        if (!again) {
            last_ = stroke;
            const auto asked = toolkitEvent(event);
            taken_ = owner_.guard_.answer("a key", false, [&] { return owner_.sendEvent(asked); });
        }
        lastWasPressed_ = !announced;
        // Taken from the shortcuts, too; the key itself is then swallowed when it comes.
        if (taken_) event.accept();
        return taken_;
    }

    struct Stroke {
        int key = 0;
        Qt::KeyboardModifiers modifiers;
        quint64 timestamp = 0;
        bool release = false;
        friend bool operator==(const Stroke&, const Stroke&) = default;
    };
    QtApplication& owner_;
    Stroke last_;
    bool lastWasPressed_ = false;
    bool taken_ = false;
};

QtApplication::QtApplication(QApplication& application, HandlerGuard& guard)
    : application_(application), guard_(guard), filter_(std::make_unique<EventFilter>(*this)) {
    application.installEventFilter(filter_.get());
    application.setQuitOnLastWindowClosed(false);
    QObject::connect(&application, &QGuiApplication::applicationStateChanged, &context_,
                     [this, was = isActive()](Qt::ApplicationState state) mutable {
                         const bool is = state == Qt::ApplicationActive;
                         if (std::exchange(was, is) == is || !activeChanged) return;
                         guard_.run("activation", [&] { activeChanged(is); });
                     });
}

QtApplication::~QtApplication() = default;

bool QtApplication::isActive() const { return QGuiApplication::applicationState() == Qt::ApplicationActive; }

void QtApplication::terminate() {
    if (terminating_ || (shouldTerminate && !shouldTerminate())) return;
    terminating_ = true;
    for (auto* window : windows_)
        if (window->isVisible()) guard_.run("the end", [&] { window->saveState(); });
    guard_.run("the end", [this] {
        if (willTerminate) willTerminate();
    });
    for (auto* run : modal_)
        run->loop->exit();
    // Not `quit`, which would ask every window once more. Later, so that it also ends a loop not yet begun.
    QMetaObject::invokeMethod(
        &application_, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

namespace {

/// Ends the loop when the window goes away without an answer.
class CloseWatcher final : public QObject {
public:
    CloseWatcher(QWidget& window, QEventLoop& loop) : loop_(loop) { window.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Hide) loop_.exit();
        return false;
    }

private:
    QEventLoop& loop_;
};

} // namespace

int QtApplication::runModalForWindow(toolkit::Window& window) {
    auto* ours = dynamic_cast<QtWindow*>(&window);
    if (!ours) return 0;
    auto& shell = ours->shell();
    QEventLoop loop;
    ModalRun run{&loop, 0};
    const bool visible = shell.isVisible();
    if (visible) shell.hide(); // Qt takes a new modality only before showing
    shell.setWindowModality(Qt::ApplicationModal);
    ours->makeKeyAndOrderFront();
    const CloseWatcher watcher(shell, loop);
    modal_.push_back(&run);
    loop.exec();
    std::erase(modal_, &run);
    shell.setWindowModality(Qt::NonModal);
    return run.code;
}

void QtApplication::stopModal(int code) {
    if (modal_.empty()) return;
    modal_.back()->code = code;
    modal_.back()->loop->exit();
}

namespace {

toolkit::Rect frameOnScreen(const QWidget& window) {
    const QRectF frame(window.frameGeometry());
    return {{frame.x(), frame.y()}, {frame.width(), frame.height()}};
}

/// A secondary window comes up over the window that the user is at; where there is none, wherever the window
/// system puts it. One that is on the screen already stays.
void placeOverParent(QWidget& window, const QWidget* parent) {
    if (window.isVisible() || !parent || parent == &window) return;
    window.ensurePolished();
    if (auto* layout = window.layout()) layout->activate();
    // What isn't on the screen has no title bar yet; it will have one like its parent's.
    const auto size = window.size() + parent->frameGeometry().size() - parent->size();
    const auto origin =
        views::originCenteredOver(frameOnScreen(*parent), {double(size.width()), double(size.height())});
    window.move(qRound(origin.x), qRound(origin.y));
}

} // namespace

/// The window that the user is at, or the first that there is.
QWidget* QtApplication::parentWindow() const {
    if (auto* active = QApplication::activeWindow()) return active;
    for (auto* window : windows_)
        if (window->isVisible()) return &window->shell();
    return nullptr;
}

void QtApplication::orderFrontStandardAboutPanel(const std::map<std::string, std::string>& options) {
    if (!aboutPanel_ && makeAboutPanel) aboutPanel_ = makeAboutPanel(options);
    if (!aboutPanel_) return;
    placeOverParent(*aboutPanel_, parentWindow());
    aboutPanel_->show();
    aboutPanel_->raise();
    aboutPanel_->activateWindow();
}

void QtApplication::openHelpAnchor(std::string_view anchor, std::string_view book) {
    if (!help_) help_ = std::make_unique<HelpWindow>();
    placeOverParent(*help_, parentWindow());
    help_->open(fromUtf8(book), fromUtf8(anchor));
}

} // namespace corvane::qt
