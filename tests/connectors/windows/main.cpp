// One application object for all windows, on a screen that isn't there.
#include <gtest/gtest.h>

#include <QApplication>

#include "qt/look/Appearance.h"

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(count, arguments);
    corvane::qt::installAppearance(application, corvane::qt::ColorScheme::light);
    return RUN_ALL_TESTS();
}
