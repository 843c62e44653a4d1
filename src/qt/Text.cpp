#include "qt/Text.h"

namespace corvane::qt {

QString withoutMnemonics(QString title) { return title.replace('&', "&&"); }

QString withMnemonic(const QString& title, QString& taken) {
    for (qsizetype at = 0; at < title.size(); ++at) {
        const QChar letter = title[at].toLower();
        if (!letter.isLetter() || taken.contains(letter)) continue;
        taken += letter;
        return withoutMnemonics(title.left(at)) + '&' + withoutMnemonics(title.mid(at));
    }
    return withoutMnemonics(title);
}

QString visibleText(const QString& titleWithMnemonic) {
    QString text;
    for (qsizetype at = 0; at < titleWithMnemonic.size(); ++at) {
        if (titleWithMnemonic[at] == '&' && ++at == titleWithMnemonic.size()) break;
        text += titleWithMnemonic[at];
    }
    return text;
}

} // namespace corvane::qt
