#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace corvane::qt {

/// The program's texts are UTF-8.
[[nodiscard]] inline QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}
[[nodiscard]] inline std::string toUtf8(const QString& text) { return text.toStdString(); }

/// A title for a widget that would read an ampersand as the mark of a mnemonic.
[[nodiscard]] QString withoutMnemonics(QString title);
/// The same with a mnemonic on the first letter that `taken` doesn't hold yet; that letter is added to it.
[[nodiscard]] QString withMnemonic(const QString& title, QString& taken);
/// What a user reads of a widget's title.
[[nodiscard]] QString visibleText(const QString& titleWithMnemonic);

} // namespace corvane::qt
