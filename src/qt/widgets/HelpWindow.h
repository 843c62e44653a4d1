#pragma once

#include <QTextBrowser>
#include <QWidget>

namespace corvane::qt {

/// Shows a help book that is built into the program.
class HelpWindow final : public QWidget {
public:
    HelpWindow();
    /// A book that isn't there gives a page that says so.
    void open(const QString& book, const QString& anchor);
    [[nodiscard]] QTextBrowser& page() { return *page_; }

private:
    QTextBrowser* page_;
};

} // namespace corvane::qt
