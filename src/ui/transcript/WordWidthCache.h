#pragma once

#include <QFontMetricsF>
#include <QHash>
#include <QString>

// Measures utterances word by word and remembers every word. Shaping a whole sentence costs
// tens of microseconds, and an interview of thousands of utterances repeats the same few hundred
// words, so this is what keeps a long transcript's first layout quick. Kerning across a blank is
// practically nil, so the sum matches the sentence's own width to well under a pixel.
class WordWidthCache
{
public:
    explicit WordWidthCache(const QFont &font);

    qreal width(const QString &text);

private:
    QFontMetricsF m_metrics;
    qreal m_blank;
    QHash<QString, qreal> m_words;
};
