// The desktop's services made of Qt, put to the same contracts as their stand-ins.
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include "contract/platform/DesktopContracts.h"
#include "qt/QtHarness.h"
#include "qt/Text.h"
#include "qt/platform/QtLocalizedStrings.h"
#include "qt/platform/QtRunLoop.h"
#include "qt/platform/QtUserDefaults.h"
#include "qt/platform/QtWorkspace.h"

namespace corvane::contract {
namespace {

class QtLoop final : public RunLoopUnderTest {
public:
    platform::RunLoop& runLoop() override { return loop_; }
    void letOneIntervalPass() override { QTest::qWait(static_cast<int>(interval * 1500)); }

private:
    qt::ListLog log_;
    qt::HandlerGuard guard_{log_};
    qt::QtRunLoop loop_{guard_};
};

class QtDefaults final : public UserDefaultsUnderTest {
public:
    platform::UserDefaults& defaults() override { return *defaults_; }
    void restart() override {
        defaults_.reset();
        file_ = std::make_unique<qt::SettingsFile>(path(), log_);
        defaults_ = std::make_unique<qt::QtUserDefaults>(*file_);
    }

private:
    [[nodiscard]] QString path() const { return folder_.filePath("settings.ini"); }
    QTemporaryDir folder_;
    qt::ListLog log_;
    std::unique_ptr<qt::SettingsFile> file_ = std::make_unique<qt::SettingsFile>(path(), log_);
    std::unique_ptr<qt::QtUserDefaults> defaults_ = std::make_unique<qt::QtUserDefaults>(*file_);
};

/// Its program writes down what it was started with.
class QtDesktop final : public WorkspaceUnderTest {
public:
    QtDesktop() {
        write(file(), "settings");
        write(program(), "#!/bin/sh\nfor each in \"$0\" \"$@\"; do echo \"$each\"; done >'" + noted() +
                             ".part'\nmv '" + noted() + ".part' '" + noted() + "'\n");
        QFile::setPermissions(qt::fromUtf8(program()),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    platform::Workspace& workspace() override { return workspace_; }
    std::string file() override { return at("connector.conf"); }
    std::string program() override { return at("configurator"); }
    std::string missing() override { return at("missing"); }
    std::vector<std::vector<std::string>> started() override {
        if (!QTest::qWaitFor([&] { return QFile::exists(qt::fromUtf8(noted())); }, 1000)) return {};
        QFile notes(qt::fromUtf8(noted()));
        if (!notes.open(QIODevice::ReadOnly)) return {};
        std::vector<std::string> words;
        for (const auto& line : notes.readAll().split('\n'))
            if (!line.isEmpty()) words.push_back(line.toStdString());
        return {words};
    }

private:
    [[nodiscard]] std::string at(const char* name) const { return qt::toUtf8(folder_.filePath(name)); }
    [[nodiscard]] std::string noted() const { return at("noted"); }
    static void write(const std::string& path, const std::string& text) {
        QFile made(qt::fromUtf8(path));
        ASSERT_TRUE(made.open(QIODevice::WriteOnly));
        made.write(text.data(), static_cast<qint64>(text.size()));
    }
    QTemporaryDir folder_;
    qt::QtWorkspace workspace_;
};

class OneTranslation final : public QTranslator {
public:
    QString translate(const char* context, const char* source, const char*, int) const override {
        return qstrcmp(context, "Corvane") == 0 && qstrcmp(source, "Key") == 0 ? QString("Schlüssel")
                                                                               : QString();
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
};

class QtStrings final : public LocalizedStringsUnderTest {
public:
    QtStrings() { QCoreApplication::installTranslator(&translator_); }
    QtStrings(const QtStrings&) = delete;
    QtStrings& operator=(const QtStrings&) = delete;
    ~QtStrings() override { QCoreApplication::removeTranslator(&translator_); }
    platform::LocalizedStrings& strings() override { return strings_; }
    std::optional<std::pair<std::string, std::string>> translated() override {
        return {{"Key", "Schlüssel"}};
    }

private:
    OneTranslation translator_;
    qt::QtLocalizedStrings strings_;
};

/// The one case of a suite: `Case` made of a new `World`.
template <typename Case, typename World>
auto onQt() {
    return testing::Values(Case{"Qt", [] { return std::make_unique<World>(); }});
}
const auto nameOf = [](const auto& info) { return info.param.name; };

} // namespace

INSTANTIATE_TEST_SUITE_P(Qt, RunLoopContract, (onQt<RunLoopCase, QtLoop>()), nameOf);
INSTANTIATE_TEST_SUITE_P(Qt, UserDefaultsContract, (onQt<UserDefaultsCase, QtDefaults>()), nameOf);
INSTANTIATE_TEST_SUITE_P(Qt, WorkspaceContract, (onQt<WorkspaceCase, QtDesktop>()), nameOf);
INSTANTIATE_TEST_SUITE_P(Qt, LocalizedStringsContract, (onQt<LocalizedStringsCase, QtStrings>()), nameOf);

} // namespace corvane::contract
