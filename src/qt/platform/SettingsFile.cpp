#include "qt/platform/SettingsFile.h"

#include <QFileInfo>
#include <QStandardPaths>

#include "qt/Text.h"

namespace corvane::qt {

namespace {

QString place(std::string_view group, std::string_view key) { return fromUtf8(group) + '/' + fromUtf8(key); }

QString defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/Corvane/Corvane.ini";
}

} // namespace

SettingsFile::SettingsFile(util::ProcessLog& log) : SettingsFile(defaultPath(), log) {}

SettingsFile::SettingsFile(const QString& path, util::ProcessLog& log) : path_(path), log_(log) {
    if (path.isEmpty()) return;
    if (const QFileInfo file(path); file.exists() && !file.isFile()) {
        log_.log("The settings aren't stored: " + toUtf8(path) + " is not a plain file.");
        return;
    }
    settings_ = std::make_unique<QSettings>(path, QSettings::IniFormat);
    if (settings_->status() == QSettings::FormatError)
        log_.log("The settings file " + toUtf8(path) + " can't be understood; what it says is ignored.");
}

std::optional<std::string> SettingsFile::read(std::string_view group, std::string_view key) const {
    if (!settings_) {
        const auto found = memory_.find(place(group, key));
        return found == memory_.end() ? std::nullopt : std::optional(toUtf8(*found));
    }
    const auto value = settings_->value(place(group, key));
    // A text with commas that somebody typed into the file without quotes comes as a list.
    if (value.typeId() == QMetaType::QStringList) return toUtf8(value.toStringList().join(", "));
    return value.isValid() ? std::optional(toUtf8(value.toString())) : std::nullopt;
}

void SettingsFile::write(std::string_view group, std::string_view key, std::string_view value) {
    if (!settings_) {
        memory_.insert(place(group, key), fromUtf8(value));
        return;
    }
    settings_->setValue(place(group, key), fromUtf8(value));
    settings_->sync();
    if (settings_->status() == QSettings::NoError || reported_) return;
    reported_ = true;
    log_.log("The settings can't be stored in " + toUtf8(path()) +
             "; they are kept until the program ends. Check the folder's permissions and free space.");
}

} // namespace corvane::qt
