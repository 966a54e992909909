#include "support/TestData.h"

#include "model/RecordJson.h"
#include "ui/transcript/SegmentSelection.h"
#include "ui/transcript/SpeakerRun.h"
#include "ui/transcript/SpeakerRunView.h"
#include "ui/transcript/TranscriptSource.h"
#include "ui/transcript/WordWidthCache.h"
#include "ui/transcript/WrappingHStack.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

QSet<QString> setOf(const QString &ids)
{
    const QStringList list = ids.split(u' ', Qt::SkipEmptyParts);
    return QSet<QString>(list.cbegin(), list.cend());
}

QString sorted(QStringList items)
{
    items.sort();
    return items.join(u' ');
}

} // namespace

class TranscriptLogicTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void speakerLabelAndColour_data() { addCaseRows(QStringLiteral("ui/speakers.txt")); }
    void speakerLabelAndColour()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        const QString speaker = QString(input).replace(QLatin1String("\\t"), QLatin1String("\t"));
        const auto colour = std::find(speakerColors.cbegin(), speakerColors.cend(), speakerColor(speaker));
        QCOMPARE(speakerLabel(speaker) + ", " + QString::number(colour - speakerColors.cbegin()), expected);
    }

    // Markers without heard words drop out, repeats (the first 50 characters) keep the oldest,
    // and the rest follow their creation time, ties in list order.
    void transcriptFromMarkers()
    {
        const auto session = RecordJson::sessionFromJson(QJsonDocument::fromJson(readTestData(QStringLiteral("ui/markers-for-transcript.json"))).object());
        QVERIFY(session);
        const QList<TranscriptSegment> built = buildTranscriptFromMarkers(*session);
        QStringList ids;
        for (const TranscriptSegment &s : built)
            ids.append(s.id);
        QCOMPARE(ids, (QStringList{"first", "tieB", "tieA", "dupOlder", "differsAt50", "late"}));
        QCOMPARE((QStringList{built[0].text, built[0].timecode, built[0].speaker}), (QStringList{"  said first  ", "10:05:00:00", ""}));
    }

    // A range on offer outshines the selection; a grade without a colour shows as ungraded.
    void chipStateAndColour()
    {
        QCOMPARE((QList<ChipState>{chipState("x", {"x"}, {}), chipState("x", {"x"}, {"x"}), chipState("y", {"x"}, {})}),
                 (QList<ChipState>{ChipState::Selected, ChipState::Highlighted, ChipState::Plain}));
        QCOMPARE(highlightColor("x", {{"x", "D"}}), highlightColor("x", {}));
        QVERIFY(!(highlightColor("x", {{"x", "A"}}) == highlightColor("x", {})));
    }

    void selectionEdits_data() { addCaseRows(QStringLiteral("ui/selection-edits.txt")); }
    void selectionEdits()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        SegmentSelection selection;
        for (const QString &edit : input.split(QLatin1String(", "))) {
            const QStringList words = edit.split(u' ');
            if (words[0] == u"click")
                selection.toggle(words[1]);
            else if (words[0] == u"grade")
                selection.toggleGrade(words[1], words[2]);
            else if (words[0] == u"remove")
                selection.remove(words[1]);
            else if (words[0] == u"add")
                selection.addAll(setOf(words.mid(1).join(u' ')));
            else
                selection.clear();
            for (const QString &graded : selection.segmentGrades.keys())
                QVERIFY2(selection.isSelected(graded), "a grade outlived its select");
        }
        QStringList grades;
        for (auto it = selection.segmentGrades.cbegin(); it != selection.segmentGrades.cend(); ++it)
            grades.append(it.key() + u'=' + it.value());
        QCOMPARE((sorted(selection.selectedSegmentIds.values()) + "; " + sorted(grades)).trimmed(), expected);
    }

    void shiftClicks_data() { addCaseRows(QStringLiteral("ui/shift-clicks.txt")); }
    void shiftClicks()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        QList<TranscriptSegment> all;
        for (const char *id : {"a", "b", "c", "d", "dup", "e", "dup"})
            all.emplace_back().id = QString::fromLatin1(id);
        const QStringList parts = input.split(QLatin1String(" | "));
        const auto anchor = shiftClickAnchor(setOf(parts[0]), setOf(parts[1]));
        const QString range = anchor ? sorted(segmentsBetween(all, *anchor, parts[2]).values()) : QStringLiteral("-");
        QCOMPARE(anchor.value_or(QStringLiteral("-")) + "; " + range, expected);
    }

    void flow_data() { addCaseRows(QStringLiteral("ui/flow.txt")); }
    void flow()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        const QStringList parts = input.split(QLatin1String(" | "));
        QList<QSizeF> sizes;
        for (const QString &size : parts[0].split(u' ', Qt::SkipEmptyParts))
            sizes.append(QSizeF(size.section(u'x', 0, 0).toDouble(), size.section(u'x', 1).toDouble()));
        const FlowPlacement placement = WrappingHStack{parts[2].toDouble()}.arrange(sizes, parts[1].toDouble());
        QStringList origins;
        for (const QPointF &origin : placement.origins)
            origins.append(QString::number(origin.x()) + u',' + QString::number(origin.y()));
        const QString size = QString::number(placement.size.width()) + u'x' + QString::number(placement.size.height());
        QCOMPARE((origins.isEmpty() ? QStringLiteral("none") : origins.join(u' ')) + " | " + size, expected);
    }

    // Chips are measured word by word from a cache; the sum must match the sentence.
    void wordWidthsAddUpToTheSentence_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("blanks everywhere") << "  two  blanks   ";
        QTest::newRow("tab inside") << "a\tb c ";
        QTest::newRow("accents") << "Zoë went to Malmö, naïvely. ";
    }

    void wordWidthsAddUpToTheSentence()
    {
        QFETCH(QString, text);
        const QFont font = SpeakerRunView::chipFont();
        WordWidthCache cache(font);
        cache.width("warm the cache with the same words ");
        QVERIFY2(qAbs(cache.width(text) - QFontMetricsF(font).horizontalAdvance(text)) < 1.0, "the words' widths differ from the sentence's");
    }
};

QTEST_MAIN(TranscriptLogicTest)
#include "TranscriptLogicTest.moc"
