#pragma once

#include <QSettings>
#include <optional>
#include <string>
#include <string_view>

#include "util/ProcessLog.h"

namespace corvane::qt {

/// The user's settings file: defaults, window frames and window state, each in a group of its own. What can't
/// be stored is kept in memory, and the log says so once.
class SettingsFile {
public:
    /// The file that this user's programs look in: Corvane/Corvane.ini in the user's configuration folder.
    explicit SettingsFile(util::ProcessLog& log);
    SettingsFile(const QString& path, util::ProcessLog& log);

    [[nodiscard]] std::optional<std::string> read(std::string_view group, std::string_view key) const;
    void write(std::string_view group, std::string_view key, std::string_view value);
    [[nodiscard]] QString path() const { return settings_.fileName(); }

private:
    QSettings settings_;
    util::ProcessLog& log_;
    bool reported_ = false;
};

} // namespace corvane::qt
