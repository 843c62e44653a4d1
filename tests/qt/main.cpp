// Tests of widgets: one application object for all of them, on a screen that isn't there.
#include <gtest/gtest.h>

#include <QApplication>
#include <QStandardPaths>

#include "qt/look/Appearance.h"

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(count, arguments);
    corvane::qt::installAppearance(application, corvane::qt::ColorScheme::light);
    return RUN_ALL_TESTS();
}
