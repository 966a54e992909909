#include "service/APIError.h"

#include <algorithm>

QString APIError::oneLine(const QString &text)
{
    QString line;
    line.reserve(std::min(text.size(), maximumLength + 1));
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (line.size() >= maximumLength) {
            // A surrogate pair is kept whole or not at all.
            if (line.back().isHighSurrogate())
                line.chop(1);
            line += QChar(0x2026);
            break;
        }
        const QChar c = text[i];
        const QChar::Category category = c.category();
        if (c == u'\t' || c == u'\n' || c == u'\r' || category == QChar::Separator_Line || category == QChar::Separator_Paragraph)
            line += u' ';
        else if (category != QChar::Other_Control)
            line += c;
    }
    return line;
}
