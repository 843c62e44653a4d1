#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>

#include "qt/QtHarness.h"
#include "qt/platform/QtLocalizedStrings.h"
#include "qt/platform/QtRunLoop.h"
#include "qt/platform/QtStateCoder.h"
#include "qt/platform/QtUserDefaults.h"
#include "qt/platform/QtWorkspace.h"

namespace corvane::qt {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(QtLocalizedStrings, WithoutATranslationTheKeyIsTheText) {
    EXPECT_EQ(QtLocalizedStrings().localized("Save Changes?"), "Save Changes?");
    EXPECT_EQ(QtLocalizedStrings().localized("Root User…"), "Root User…");
}

TEST(QtLocalizedStrings, TheWrittenApostropheBecomesARealOne) {
    EXPECT_EQ(QtLocalizedStrings().localized("Don\\U02BCt Save"), "Don\u02BCt Save");
}

TEST(QtUserDefaults, KeepsTextsAndBooleansBetweenRuns) {
    QtHarness qt;
    {
        SettingsFile file(qt.folder.filePath("kept.ini"), qt.log);
        QtUserDefaults defaults(file);
        defaults.setString("Last Server IP Address", "ldap.example, port 389");
        defaults.setBool("ShowDebugMenu", true);
    }
    SettingsFile file(qt.folder.filePath("kept.ini"), qt.log);
    const QtUserDefaults defaults(file);
    EXPECT_EQ(defaults.stringForKey("Last Server IP Address"), "ldap.example, port 389");
    EXPECT_TRUE(defaults.boolForKey("ShowDebugMenu"));
    EXPECT_EQ(defaults.stringForKey("Last User Name"), std::nullopt);
    EXPECT_THAT(qt.log.lines, IsEmpty());
}

TEST(QtUserDefaults, AnAbsentBooleanReadsAsRegisteredAndAsFalseOtherwise) {
    QtHarness qt;
    QtUserDefaults defaults(qt.settings);
    EXPECT_FALSE(defaults.boolForKey("FirstLaunch"));
    defaults.registerBool("FirstLaunch", true);
    EXPECT_TRUE(defaults.boolForKey("FirstLaunch"));
    defaults.setBool("FirstLaunch", false);
    EXPECT_FALSE(defaults.boolForKey("FirstLaunch"));
}

TEST(SettingsFile, WhatCannotBeStoredIsKeptInMemoryAndLoggedOnce) {
    QtHarness qt;
    SettingsFile file("/proc/corvane/settings.ini", qt.log);
    file.write("Defaults", "a", "1");
    file.write("Defaults", "b", "2");
    EXPECT_EQ(file.read("Defaults", "a"), "1");
    ASSERT_EQ(qt.log.lines.size(), 1U);
    EXPECT_THAT(qt.log.lines[0], HasSubstr("/proc/corvane/settings.ini"));
}

TEST(SettingsFile, PathThatIsNoPlainFile_IsNeverReplaced) {
    const QtHarness qt;
    const auto pipe = qt.folder.filePath("a-device");
    ASSERT_EQ(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    const auto link = qt.folder.filePath("settings.ini");
    ASSERT_TRUE(QFile::link(pipe, link));
    for (const auto& path : {pipe, link, qt.folder.path()}) {
        ListLog log;
        SettingsFile file(path, log);
        file.write("Defaults", "a", "1");
        EXPECT_EQ(file.read("Defaults", "a"), "1") << "kept in memory";
        ASSERT_EQ(log.lines.size(), 1U);
        EXPECT_THAT(log.lines[0], HasSubstr("not a plain file"));
    }
    struct stat status {};
    ASSERT_EQ(::stat(pipe.toLocal8Bit().constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
}

TEST(SettingsFile, NoPath_StoresNothing) {
    QtHarness qt;
    SettingsFile file("", qt.log);
    file.write("Defaults", "a", "1");
    EXPECT_EQ(file.read("Defaults", "a"), "1");
    EXPECT_TRUE(qt.log.lines.empty());
}

TEST(SettingsFile, WindowStateAndDefaultsDoNotMix) {
    QtHarness qt;
    QtStateCoder coder(qt.settings);
    coder.encodeString("windowTopLeft", "{10, 20}");
    EXPECT_EQ(coder.decodeString("windowTopLeft"), "{10, 20}");
    EXPECT_EQ(QtUserDefaults(qt.settings).stringForKey("windowTopLeft"), std::nullopt);
}

TEST(QtRunLoop, ATimerRepeatsUntilItIsInvalidated) {
    QtHarness qt;
    int calls = 0;
    std::unique_ptr<platform::Timer> timer;
    timer = QtRunLoop(qt.guard).scheduleRepeatingTimer(0.001, [&] {
        if (++calls == 3) timer->invalidate();
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return calls == 3; }));
    QTest::qWait(20);
    EXPECT_EQ(calls, 3);
}

TEST(QtRunLoop, ATimerScheduledOnceFiresOnceUnlessItIsDroppedBefore) {
    QtHarness qt;
    QtRunLoop loop(qt.guard);
    int calls = 0;
    auto dropped = loop.scheduleTimer(0.001, [&] { calls += 100; });
    dropped.reset();
    const auto timer = loop.scheduleTimer(0.001, [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return calls > 0; }));
    QTest::qWait(20);
    EXPECT_EQ(calls, 1);
}

TEST(QtRunLoop, ATimerMayBeDroppedByItsOwnCall) {
    QtHarness qt;
    std::unique_ptr<platform::Timer> timer;
    int calls = 0;
    timer = QtRunLoop(qt.guard).scheduleRepeatingTimer(0.001, [&] {
        ++calls;
        timer.reset();
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return calls > 0; }));
    QTest::qWait(20);
    EXPECT_EQ(calls, 1);
}

TEST(QtRunLoop, AFailingCallIsLoggedAndTheTimerGoesOn) {
    QtHarness qt;
    const auto timer =
        QtRunLoop(qt.guard).scheduleRepeatingTimer(0.001, [] { throw std::runtime_error("no node"); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return qt.log.lines.size() >= 2; }));
    EXPECT_EQ(qt.log.lines[0], "Exception while handling a timer: no node");
}

TEST(QtWorkspace, StartsAProgramWithAFileAndSaysWhenItCannot) {
    QTemporaryDir folder;
    const auto copy = folder.filePath("copy").toStdString();
    QFile script(folder.filePath("program"));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\ncp \"$1\" \"" + QByteArray::fromStdString(copy) + ".part\"\nmv \"" +
                 QByteArray::fromStdString(copy) + ".part\" \"" + QByteArray::fromStdString(copy) + "\"\n");
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    script.close();
    QtWorkspace workspace;
    const auto program = script.fileName().toStdString();
    EXPECT_TRUE(workspace.fileExists(program));
    EXPECT_TRUE(workspace.openFile(program, program));
    EXPECT_TRUE(QTest::qWaitFor([&] { return workspace.fileExists(copy); }));
    EXPECT_FALSE(workspace.fileExists(copy + ".other"));
    EXPECT_FALSE(workspace.openFile(program, copy + ".other"));
    EXPECT_FALSE(workspace.launchApplication(copy + ".other"));
}

} // namespace
} // namespace corvane::qt
