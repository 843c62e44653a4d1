#pragma once

#include <QDialog>
#include <map>
#include <string>
#include <vector>

#include "qt/HandlerGuard.h"

namespace corvane::qt {

/// What the About panel says beside the years.
struct About {
    std::string name;
    std::string version;
    std::string summary;
    std::string licence;
    std::vector<std::string> components; ///< libraries used, each with its licence
};

/// Who made this, which version it is, and what it is built on.
class AboutPanel final : public QDialog {
public:
    /// Options "NoticeStartYear" and "NoticeEndYear" are the years of the copyright notice.
    AboutPanel(const About& about, const std::map<std::string, std::string>& options, HandlerGuard& guard);
};

} // namespace corvane::qt
