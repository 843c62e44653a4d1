#include <gtest/gtest.h>

#include "qt/QtHarness.h"
#include "qt/windows/AddNodesInterface.h"
#include "qt/windows/MainWindowInterface.h"

namespace corvane::qt {
namespace {

/// Nobody is asked for rights here.
class NoRights final : public platform::AuthorizationService {
public:
    std::shared_ptr<platform::Authorization> createAuthorization() override { return nullptr; }
    std::int32_t makeExternalForm(platform::AuthorizationRef, util::AuthorizationExternalForm&) override {
        return -1;
    }
};

std::string said(const toolkit::View& table) {
    const auto* list = dynamic_cast<const TableWidget*>(widgetOf(&table));
    return list ? list->accessibleDescription().toStdString() : "no list";
}

TEST(EmptyLists, OfTheMainWindowSayWhatIsMissing) {
    QtHarness qt;
    NoRights rights;
    const MainWindowInterface window(qt.application, rights, qt.settings, qt.guard);
    EXPECT_EQ(said(window.selectPlugIn), "No directory services");
    EXPECT_EQ(said(window.selectNode), "No directory domains");
    EXPECT_EQ(said(window.selectNodeContact), "No directory domains");
}

TEST(EmptyLists, OfThePanelOfNodesSaysWhetherTheFilterIsToBlame) {
    QtHarness qt;
    AddNodesInterface panel(qt.settings, qt.guard);
    EXPECT_EQ(said(panel.selectNode), "No directory domains to add");
    panel.filter.setStringValue("zzz");
    EXPECT_EQ(said(panel.selectNode), "No directory domain matches the filter");
    panel.filter.setStringValue("");
    EXPECT_EQ(said(panel.selectNode), "No directory domains to add");
}

} // namespace
} // namespace corvane::qt
