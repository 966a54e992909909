#include "export/TextCleaning.h"

#include <QTextBoundaryFinder>
#include <algorithm>

namespace {

constexpr qsizetype maximumLength = 200;

bool isPrintableASCII(QChar c)
{
    return c.unicode() >= 32 && c.unicode() <= 126;
}

} // namespace

QString safeASCII(QStringView text)
{
    // Two printable ASCII characters never join into one grapheme, so all-ASCII text needs no
    // boundary analysis: only its length is cut.
    if (std::all_of(text.begin(), text.end(), isPrintableASCII))
        return text.left(maximumLength).toString();

    QString kept;
    kept.reserve(std::min(text.size(), maximumLength));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end != -1 && kept.size() < maximumLength;
         start = end, end = finder.toNextBoundary()) {
        if (end - start == 1 && isPrintableASCII(text[start]))
            kept.append(text[start]);
    }
    return kept;
}

QString xmlEscaped(QStringView text)
{
    QString escaped;
    escaped.reserve(text.size() + text.size() / 8);
    for (QChar c : text) {
        switch (c.unicode()) {
        case '&': escaped += QLatin1String("&amp;"); break;
        case '<': escaped += QLatin1String("&lt;"); break;
        case '>': escaped += QLatin1String("&gt;"); break;
        case '"': escaped += QLatin1String("&quot;"); break;
        case '\'': escaped += QLatin1String("&apos;"); break;
        default: escaped += c;
        }
    }
    return escaped;
}

QString safeXML(QStringView text)
{
    return xmlEscaped(safeASCII(text));
}

QString jsonEscaped(QStringView text)
{
    QString escaped;
    escaped.reserve(text.size() + 8);
    for (QChar c : text) {
        if (c == u'\\' || c == u'"')
            escaped += u'\\';
        escaped += c;
    }
    return escaped;
}

QString percentEncodedPath(const QString &path)
{
    const QString encoded = QString::fromLatin1(path.toUtf8().toPercentEncoding("!$&'()*+,;=:@/"));
    return encoded.startsWith(u'/') ? encoded : u'/' + encoded;
}
