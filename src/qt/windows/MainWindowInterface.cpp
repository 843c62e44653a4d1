#include "qt/windows/MainWindowInterface.h"

#include <QMainWindow>
#include <QMenuBar>
#include <QPainter>
#include <QStatusBar>
#include <tuple>

#include "qt/Text.h"
#include "qt/look/Appearance.h"
#include "qt/look/Icons.h"
#include "qt/look/ScreenFit.h"
#include "ui_MainWindow.h"

namespace corvane::qt {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("MainWindow", text); }

std::vector<QtTableView::Column> serviceColumns() {
    return {{"Name", tr("Name")}, {"Version", tr("Version")}, {"On-Off", tr("On")}};
}

std::vector<QtTableView::Column> nodeColumns() { return {{"NodeName", tr("Directory Domain")}}; }

/// Says under a policy's pop-up what the chosen item means.
void explainChoice(QComboBox& box, QLabel& explanation, const QStringList& texts) {
    makeSecondary(explanation);
    const auto follow = [&explanation, texts](int index) {
        explanation.setText(index >= 0 && index < texts.size() ? texts[index] : QString());
    };
    QObject::connect(&box, &QComboBox::currentIndexChanged, &explanation, follow);
    follow(box.currentIndex());
}

/// What a list says while it has no rows; a little below its upper edge.
void sayWhenEmpty(TableWidget& table, const QString& message) {
    table.emptyMessage().awakeFromNib();
    table.emptyMessage().setMesageForEmptyList(toUtf8(message));
    table.emptyMessage().setMessageRow(1);
}

/// A box that a list of directories is added to or taken from: a sign instead of a text.
void asSign(QToolButton& button, const char* sign) {
    button.setIcon(icon(sign));
    button.setFocusPolicy(Qt::StrongFocus);
}

/// The strip about what wasn't saved gets its two buttons.
std::pair<QPushButton*, QPushButton*> equip(NoticeStrip& strip, const char* tryAgain, const char* showSaved) {
    strip.hide();
    return {&strip.addButton(tr("&Try Again"), tryAgain),
            &strip.addButton(tr("Show What Is &Saved"), showSaved)};
}

/// Shows or hides a widget together with a strip, or in its place.
class Follows final : public QObject {
public:
    enum class How { together, inItsPlace };
    Follows(QWidget& strip, QWidget& other, How how = How::together)
        : QObject(&strip), strip_(strip), other_(other), how_(how) {
        strip.installEventFilter(this);
    }
    bool eventFilter(QObject* /*strip*/, QEvent* event) override {
        const bool changes = event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent;
        if (changes) other_.setVisible(strip_.isHidden() == (how_ == How::inItsPlace));
        return false;
    }

private:
    QWidget& strip_;
    QWidget& other_;
    How how_;
};

/// A strip below everything else, which takes no room from the panes.
NoticeStrip& addFootStrip(QMainWindow& shell) {
    auto* foot = new QStatusBar(&shell);
    foot->setSizeGripEnabled(false);
    foot->setContentsMargins(22, 0, 24, 6); // as wide as the panes: a status bar adds two on its left
    auto* strip = new NoticeStrip(foot);
    strip->setObjectName("trialNotice");
    strip->keepMessageOnOneLine();
    foot->addWidget(strip, 1);
    shell.setStatusBar(foot);
    new Follows(*strip, *foot);
    strip->hide();
    return *strip;
}

/// The tab key takes them between two others.
void standBetween(QWidget& before, std::initializer_list<QWidget*> widgets, QWidget& after) {
    auto* last = &before;
    for (auto* each : widgets) {
        QWidget::setTabOrder(last, each);
        last = each;
    }
    QWidget::setTabOrder(last, &after);
}

} // namespace

struct MainWindowInterface::Form {
    Form() {
        ui.setupUi(&shell);
        // Drawn as part of the window, shown as a sheet: it waits outside of the window.
        ui.progressSheet->setParent(nullptr);
        dress();
    }
    ~Form() { delete ui.progressSheet; }
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    QMainWindow shell;
    Ui::MainWindow ui;
    NoticeStrip* trialNotice = nullptr;
    QPushButton* tryAgain = nullptr;
    QPushButton* showSaved = nullptr;
    QPushButton* tryAgainContact = nullptr;
    QPushButton* showSavedContact = nullptr;

private:
    void dress() {
        for (auto* heading : {ui.servicesHeading, ui.editorHeading})
            makeHeading(*heading, 1.15);
        for (auto* note :
             {ui.servicesNote, ui.serviceState, ui.editorNote, ui.dragMessage, ui.dragMessageContact})
            makeSecondary(*note);
        sayWhenEmpty(*ui.selectPlugIn, tr("No directory services"));
        sayWhenEmpty(*ui.selectNode, tr("No directory domains"));
        sayWhenEmpty(*ui.selectNodeContact, tr("No directory domains"));
        asSign(*ui.addNode, "Plus");
        asSign(*ui.addNodeContact, "Plus");
        asSign(*ui.deleteNode, "Minus");
        asSign(*ui.deleteNodeContact, "Minus");
        asSign(*ui.helpButton, "Help");
        ui.helpButton->setProperty("round", true);
        trialNotice = &addFootStrip(shell);
        constexpr int headingAndOneRow = 52;
        for (auto* list : {ui.selectNode, ui.selectNodeContact})
            list->setMinimumHeight(headingAndOneRow); // what is left beside a strip
        new Follows(*ui.unsaved, *ui.policyExplanation, Follows::How::inItsPlace);
        new Follows(*ui.unsavedContact, *ui.contactExplanation, Follows::How::inItsPlace);
        std::tie(tryAgain, showSaved) = equip(*ui.unsaved, "tryAgain", "showSaved");
        std::tie(tryAgainContact, showSavedContact) =
            equip(*ui.unsavedContact, "tryAgainContact", "showSavedContact");
        standBetween(*ui.selectSearchPolicy, {tryAgain, showSaved}, *ui.selectNode);
        standBetween(*ui.selectContactPolicy, {tryAgainContact, showSavedContact}, *ui.selectNodeContact);
        ui.authorizationView->setFocusPolicy(Qt::StrongFocus);
        ui.editorSign->setPixmap(icon("Halden_32").pixmap(QSize(64, 64), shell.devicePixelRatioF()));
        explainChoice(*ui.selectSearchPolicy, *ui.policyExplanation,
                      {tr("Looks in the local directory, then in every directory this machine is joined to."),
                       tr("Looks for users and groups of this machine only."),
                       tr("Looks in the local directory, then in the directories below, in this order.")});
        explainChoice(*ui.selectContactPolicy, *ui.contactExplanation,
                      {tr("Looks for contacts in every directory this machine is joined to."),
                       tr("Looks for contacts in the local directory only."),
                       tr("Looks for contacts in the directories below, in this order.")});
    }
};

MainWindowInterface::MainWindowInterface(QtApplication& application,
                                         platform::AuthorizationService& authorization,
                                         SettingsFile& settings, HandlerGuard& guard)
    : form_(std::make_unique<Form>()), window(form_->shell, *form_->ui.contentView, guard, settings),
      mainVsDirectoryEditorTabView(*form_->ui.mainVsDirectoryEditorTabView, guard),
      mainTabView(*form_->ui.mainTabView, guard),
      progressSheet(*form_->ui.progressSheet, *form_->ui.progressSheet, guard, settings),
      progressBar(*form_->ui.progressBar), applyButton(*form_->ui.applyButton, guard),
      helpButton(*form_->ui.helpButton, guard),
      selectPlugIn(*form_->ui.selectPlugIn, serviceColumns(), guard),
      configPlugIn(*form_->ui.configPlugIn, guard), serviceState(*form_->ui.serviceState),
      selectSearchPolicy(*form_->ui.selectSearchPolicy, guard),
      selectNode(*form_->ui.selectNode, nodeColumns(), guard), addNode(*form_->ui.addNode, guard),
      deleteNode(*form_->ui.deleteNode, guard), dragMessage(*form_->ui.dragMessage),
      selectContactPolicy(*form_->ui.selectContactPolicy, guard),
      selectNodeContact(*form_->ui.selectNodeContact, nodeColumns(), guard),
      addNodeContact(*form_->ui.addNodeContact, guard),
      deleteNodeContact(*form_->ui.deleteNodeContact, guard),
      dragMessageContact(*form_->ui.dragMessageContact), trialNotice(*form_->trialNotice),
      busy(*form_->ui.busyNote), unsaved(*form_->ui.unsaved), tryAgain(*form_->tryAgain, guard),
      showSaved(*form_->showSaved, guard), unsavedContact(*form_->ui.unsavedContact),
      tryAgainContact(*form_->tryAgainContact, guard), showSavedContact(*form_->showSavedContact, guard),
      remarks(*form_->ui.remarks), remarksContact(*form_->ui.remarksContact),
      authorizationView(*form_->ui.authorizationView, authorization, guard),
      menu(*form_->shell.menuBar(), application, guard) {
    window.setTitle("Corvane");
    remarks.setHidden(true);
    remarksContact.setHidden(true);
    window.setContentMinSize({590, 365});
}

MainWindowInterface::~MainWindowInterface() = default;

QWidget& MainWindowInterface::directoryEditorPage() const { return *form_->ui.directoryEditorPage; }

QMainWindow& MainWindowInterface::shell() const { return form_->shell; }

void prepareForPictures() {
    forgetScreen();
    if (!qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) qputenv("QT_SCALE_FACTOR", "2");
}

bool renderToFile(QWidget& window, const QString& path) {
    const double scale = std::max(2.0, window.devicePixelRatioF());
    window.ensurePolished();
    if (auto* layout = window.layout()) layout->activate();
    QImage picture(window.size() * scale, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(window.palette().color(QPalette::Window));
    window.render(&picture);
    return picture.save(path);
}

} // namespace corvane::qt
