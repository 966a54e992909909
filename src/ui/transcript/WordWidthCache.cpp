#include "ui/transcript/WordWidthCache.h"

WordWidthCache::WordWidthCache(const QFont &font)
    : m_metrics(font)
    , m_blank(m_metrics.horizontalAdvance(u' '))
{
}

qreal WordWidthCache::width(const QString &text)
{
    qreal total = 0;
    qsizetype wordStart = 0;
    const auto addWord = [&](qsizetype end) {
        if (end == wordStart)
            return;
        const QString word = text.mid(wordStart, end - wordStart);
        auto known = m_words.constFind(word);
        if (known == m_words.cend())
            known = m_words.insert(word, m_metrics.horizontalAdvance(word));
        total += *known;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u' ')
            continue;
        addWord(i);
        total += m_blank;
        wordStart = i + 1;
    }
    addWord(text.size());
    return total;
}
