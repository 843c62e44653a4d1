#include "qt/widgets/HelpWindow.h"

#include <QCoreApplication>
#include <QFile>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

#include "qt/widgets/GrowingArea.h"

namespace corvane::qt {

HelpWindow::HelpWindow() : page_(new QTextBrowser(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(page_);
    page_->setFrameShape(QFrame::NoFrame);
    page_->setOpenExternalLinks(true);
    page_->document()->setDocumentMargin(24);
    page_->document()->setIndentWidth(20);
    resize(520, std::min(560, heightOnScreen(*this)));
    for (const auto& keys : {QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close)}) {
        auto* shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, this, &QWidget::close);
    }
}

void HelpWindow::open(const QString& book, const QString& anchor) {
    setWindowTitle(book);
    const auto path = ":/corvane/help/" + QString(book).replace(' ', '-') + ".html";
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        page_->setHtml(QString::fromUtf8(file.readAll()));
    else
        page_->setPlainText(QCoreApplication::translate("HelpWindow", "This copy of the program contains no "
                                                                      "help book named “%1”.")
                                .arg(book));
    show();
    raise();
    activateWindow();
    page_->scrollToAnchor(anchor);
}

} // namespace corvane::qt
