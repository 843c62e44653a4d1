#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>
#include <string>
#include <vector>

#include "qt/HandlerGuard.h"
#include "qt/adapters/QtApplication.h"
#include "qt/platform/SettingsFile.h"

namespace corvane::qt {

class ListLog final : public util::ProcessLog {
public:
    void log(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

/// What every adapter needs, with a settings file that goes with the test.
struct QtHarness {
    ListLog log;
    HandlerGuard guard{log};
    QTemporaryDir folder;
    SettingsFile settings{folder.filePath("settings.ini"), log};
    QtApplication application{*qApp, guard};
};

} // namespace corvane::qt
