#include <QFile>

#include "qt/QtHarness.h"

namespace corvane::qt {

TEST(Help, coversWhatPeopleComeAcross) {
    QFile book(":/corvane/help/Corvane-Help.html");
    ASSERT_TRUE(book.open(QIODevice::ReadOnly));
    const auto text = QString::fromUtf8(book.readAll());
    for (const auto* anchor : {"main-window", "lock", "machine", "services", "ldap", "testing",
                               "search-policy", "apply", "going-back", "not-yet"})
        EXPECT_EQ(text.count(QString("<a name=\"%1\">").arg(anchor)), 1) << anchor;
    for (const auto* word : {"Try Again", "Show What Is Saved", "Trial folder", "Ask Server", "generations"})
        EXPECT_TRUE(text.contains(word)) << word;
}

} // namespace corvane::qt
