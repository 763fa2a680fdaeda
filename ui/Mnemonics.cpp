#include "ui/Mnemonics.h"

#include <QSet>

namespace quillary {

namespace {

qsizetype FreeLetter(const QString& text, const QSet<QChar>& taken, bool wordStartsOnly) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool startsWord = i == 0 || text[i - 1].isSpace();
        if ((startsWord || !wordStartsOnly) && text[i].isLetter() && !taken.contains(text[i].toUpper())) return i;
    }
    return -1;
}

}  // namespace

QStringList WithMnemonics(const QStringList& texts) {
    QStringList marked;
    QSet<QChar> taken;
    for (const QString& text : texts) {
        qsizetype at = FreeLetter(text, taken, true);
        if (at < 0) at = FreeLetter(text, taken, false);
        QString before = text.left(at < 0 ? text.size() : at);
        QString rest = at < 0 ? QString() : text.mid(at);
        before.replace(u'&', QStringLiteral("&&"));
        rest.replace(u'&', QStringLiteral("&&"));
        if (at >= 0) {
            taken.insert(text[at].toUpper());
            before += u'&';
        }
        marked << before + rest;
    }
    return marked;
}

}  // namespace quillary
