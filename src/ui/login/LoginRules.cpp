#include "ui/login/LoginRules.h"

#include "ui/widgets/TrimSpacesAndTabs.h"

#include <QList>
#include <QTextBoundaryFinder>

namespace LoginRules {

bool isValidEmail(const QString &text)
{
    const QStringView trimmed = trimSpacesAndTabs(text);
    return trimmed.contains(u'@') && trimmed.contains(u'.');
}

bool isValidCode(const QString &text)
{
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    int count = 0;
    qsizetype start = 0;
    for (qsizetype next = graphemes.toNextBoundary(); next != -1; next = graphemes.toNextBoundary()) {
        // A cluster counts by its base character, so a digit carrying a combining mark is numeric.
        const char32_t base = QStringView(text).mid(start, next - start).toUcs4().value(0);
        if (!QChar::isNumber(base))
            return false;
        ++count;
        start = next;
    }
    return count == 6;
}

} // namespace LoginRules
