#include "export/PlainLine.h"

QString plainLine(QStringView text)
{
    QString line;
    line.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            line += c;
            line += text[++i];
        } else if (c.isSurrogate() || c.unicode() == 0xFFFE || c.unicode() == 0xFFFF) {
            continue;
        } else if (c.category() == QChar::Other_Control || c.unicode() == 0x2028 || c.unicode() == 0x2029) {
            line += u' ';
        } else {
            line += c;
        }
    }
    return line.simplified();
}
