#include "qt/SettingsFile.h"

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

SettingsFile::SettingsFile(const QString& path, util::ProcessLog& log)
    : settings_(path, QSettings::IniFormat), log_(log) {
    if (settings_.status() == QSettings::FormatError)
        log_.log("The settings file " + toUtf8(path) + " can't be understood; what it says is ignored.");
}

std::optional<std::string> SettingsFile::read(std::string_view group, std::string_view key) const {
    const auto value = settings_.value(place(group, key));
    // A text with commas that somebody typed into the file without quotes comes as a list.
    if (value.typeId() == QMetaType::QStringList) return toUtf8(value.toStringList().join(", "));
    return value.isValid() ? std::optional(toUtf8(value.toString())) : std::nullopt;
}

void SettingsFile::write(std::string_view group, std::string_view key, std::string_view value) {
    settings_.setValue(place(group, key), fromUtf8(value));
    settings_.sync();
    if (settings_.status() == QSettings::NoError || reported_) return;
    reported_ = true;
    log_.log("The settings can't be stored in " + toUtf8(path()) +
             "; they are kept until the program ends. Check the folder's permissions and free space.");
}

} // namespace corvane::qt
