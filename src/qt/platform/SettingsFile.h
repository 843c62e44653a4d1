#pragma once

#include <QHash>
#include <QSettings>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "util/ProcessLog.h"

namespace corvane::qt {

/// The user's settings file: defaults, window frames and window state, each in a group of its own. What can't
/// be stored is kept in memory, and the log says so once. A path that leads to anything but a plain file,
/// such as a device, is never written: saving replaces a file, and would replace the device.
class SettingsFile {
public:
    /// The file that this user's programs look in: Corvane/Corvane.ini in the user's configuration folder.
    explicit SettingsFile(util::ProcessLog& log);
    /// "": nothing is stored.
    SettingsFile(const QString& path, util::ProcessLog& log);

    [[nodiscard]] std::optional<std::string> read(std::string_view group, std::string_view key) const;
    void write(std::string_view group, std::string_view key, std::string_view value);
    [[nodiscard]] QString path() const { return path_; }

private:
    QString path_;
    std::unique_ptr<QSettings> settings_; ///< null when everything is kept in memory
    QHash<QString, QString> memory_;
    util::ProcessLog& log_;
    bool reported_ = false;
};

} // namespace corvane::qt
