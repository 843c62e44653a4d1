#pragma once

#include <QDialog>
#include <map>
#include <string>

#include "qt/QtApplication.h"

namespace corvane::qt {

/// Who made this, which version it is, and what it is built on.
class AboutPanel final : public QDialog {
public:
    AboutPanel(const QtApplication::About& about, const std::map<std::string, std::string>& options,
               HandlerGuard& guard);
};

} // namespace corvane::qt
