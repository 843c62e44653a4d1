#include "qt/platform/QtWorkspace.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

#include "qt/Text.h"

namespace corvane::qt {

bool QtWorkspace::fileExists(const std::string& path) const { return QFileInfo::exists(fromUtf8(path)); }

bool QtWorkspace::launchApplication(const std::string& path) {
    const QFileInfo file(fromUtf8(path));
    if (!file.exists()) return false;
    if (file.isFile() && file.isExecutable()) return QProcess::startDetached(file.filePath(), {});
    return QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath()));
}

bool QtWorkspace::openFile(const std::string& file, const std::string& application) {
    return QProcess::startDetached(fromUtf8(application), {fromUtf8(file)});
}

} // namespace corvane::qt
