#include "qt/platform/QtLocalizedStrings.h"

#include <QCoreApplication>

#include "qt/Text.h"

namespace corvane::qt {

std::string QtLocalizedStrings::localized(std::string_view key) const {
    const std::string source(key);
    auto text = QCoreApplication::translate("Corvane", source.c_str());
    return toUtf8(text.replace("\\U02BC", QString(QChar(0x02BC))));
}

} // namespace corvane::qt
