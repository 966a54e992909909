#include "ui/transcript/SegmentSelection.h"
#include "ui/transcript/SpeakerRun.h"
#include "ui/transcript/SpeakerRunView.h"
#include "ui/transcript/TranscriptSource.h"
#include "ui/transcript/WordWidthCache.h"
#include "ui/transcript/WrappingHStack.h"

#include <QTest>

namespace {

ShootMarker marker(const QString &id, int minute, std::optional<QString> raw)
{
    ShootMarker m;
    m.id = id;
    m.timecode = QStringLiteral("10:%1:00:00").arg(minute, 2, 10, QChar(u'0'));
    m.raw = std::move(raw);
    m.createdAt = QDateTime(QDate(2026, 11, 20), QTime(9, minute), Qt::UTC);
    return m;
}

QSet<QString> setOf(const QStringList &ids)
{
    return QSet<QString>(ids.cbegin(), ids.cend());
}

} // namespace

class TranscriptLogicTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void speakerLabelAndColour_data()
    {
        QTest::addColumn<QString>("speaker");
        QTest::addColumn<QString>("label");
        QTest::addColumn<int>("colour"); // from the last character's distance to 'A', wrapped
        QTest::newRow("upper-case prefix") << "SPEAKER B" << "Speaker B" << 1;
        QTest::newRow("wraps") << "SPEAKER F" << "Speaker F" << 0;
        QTest::newRow("title case kept") << "Speaker A" << "Speaker Speaker A" << 0;
        QTest::newRow("lower case a is 32 from A") << "speaker a" << "Speaker speaker a" << 2;
        QTest::newRow("digit below A") << "SPEAKER 1" << "Speaker 1" << 1;
        QTest::newRow("not ASCII") << QStringLiteral("Zoë") << QStringLiteral("Speaker Zoë") << 0;
        QTest::newRow("empty") << "" << "Speaker A" << 0;
        QTest::newRow("prefix only") << "SPEAKER " << "Speaker A" << 3;
        QTest::newRow("every occurrence, blanks trimmed") << " SPEAKER SPEAKER C\t" << "Speaker C" << 1;
    }

    void speakerLabelAndColour()
    {
        QFETCH(QString, speaker);
        QFETCH(QString, label);
        QFETCH(int, colour);
        QCOMPARE(speakerLabel(speaker), label);
        QCOMPARE(speakerColor(speaker), speakerColors[std::size_t(colour)]);
    }

    void transcriptFromMarkers()
    {
        ShootSession session;
        const QString fifty(50, u'x');
        session.markers = {
            marker("late", 30, QStringLiteral("said last")),
            marker("silent", 1, QStringLiteral("[no speech]")),
            marker("note", 2, QStringLiteral("[manual note]")),
            marker("blank", 3, QString()),
            marker("none", 4, std::nullopt),
            marker("dupNewer", 20, fifty + QStringLiteral(" newer ending")),
            marker("dupOlder", 10, fifty + QStringLiteral(" older ending")),
            marker("first", 5, QStringLiteral("  said first  ")),
            marker("differsAt50", 25, QString(49, u'x') + QStringLiteral("y")),
            marker("tieB", 7, QStringLiteral("two")),
            marker("tieA", 7, QStringLiteral("one")),
        };
        const QList<TranscriptSegment> built = buildTranscriptFromMarkers(session);
        QStringList ids;
        for (const TranscriptSegment &s : built)
            ids.append(s.id);
        QCOMPARE(ids, (QStringList{"first", "tieB", "tieA", "dupOlder", "differsAt50", "late"}));
        QCOMPARE(built[0].text, QStringLiteral("  said first  "));
        QCOMPARE(built[0].timecode, QStringLiteral("10:05:00:00"));
        QCOMPARE(built[0].speaker, QString());
        QCOMPARE(built[3].text, fifty + QStringLiteral(" older ending"));
    }

    void selectionOperations_data()
    {
        QTest::addColumn<QStringList>("operations");
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<QStringList>("grades"); // "id=grade"
        QTest::newRow("click selects") << QStringList{"click x"} << QStringList{"x"} << QStringList{};
        QTest::newRow("second click deselects") << QStringList{"click x", "click x"} << QStringList{} << QStringList{};
        QTest::newRow("grading selects") << QStringList{"grade x B"} << QStringList{"x"} << QStringList{"x=B"};
        QTest::newRow("same grade again ungrades, stays selected") << QStringList{"grade x B", "grade x B"} << QStringList{"x"} << QStringList{};
        QTest::newRow("other grade replaces") << QStringList{"grade x B", "grade x A"} << QStringList{"x"} << QStringList{"x=A"};
        QTest::newRow("click on graded drops the grade") << QStringList{"grade x C", "click x"} << QStringList{} << QStringList{};
        QTest::newRow("remove drops the grade") << QStringList{"grade x C", "click y", "remove x"} << QStringList{"y"} << QStringList{};
        QTest::newRow("range keeps grades") << QStringList{"grade x A", "add x y z"} << QStringList{"x", "y", "z"} << QStringList{"x=A"};
        QTest::newRow("clear all") << QStringList{"grade x A", "click y", "clear"} << QStringList{} << QStringList{};
    }

    void selectionOperations()
    {
        QFETCH(QStringList, operations);
        QFETCH(QStringList, selected);
        QFETCH(QStringList, grades);
        SegmentSelection selection;
        for (const QString &operation : operations) {
            const QStringList words = operation.split(u' ');
            if (words[0] == u"click")
                selection.toggle(words[1]);
            else if (words[0] == u"grade")
                selection.toggleGrade(words[1], words[2]);
            else if (words[0] == u"remove")
                selection.remove(words[1]);
            else if (words[0] == u"add")
                selection.addAll(setOf(words.mid(1)));
            else
                selection.clear();
            for (const QString &graded : selection.segmentGrades.keys())
                QVERIFY2(selection.isSelected(graded), "a grade outlived its select");
        }
        QCOMPARE(selection.selectedSegmentIds, setOf(selected));
        QHash<QString, QString> expectedGrades;
        for (const QString &grade : grades)
            expectedGrades.insert(grade.section(u'=', 0, 0), grade.section(u'=', 1));
        QCOMPARE(selection.segmentGrades, expectedGrades);
    }

    void segmentsBetween_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QStringList>("range");
        QTest::newRow("forward") << "b" << "d" << QStringList{"b", "c", "d"};
        QTest::newRow("backward") << "d" << "b" << QStringList{"b", "c", "d"};
        QTest::newRow("unknown anchor") << "zz" << "c" << QStringList{"c"};
        QTest::newRow("unknown target") << "a" << "zz" << QStringList{"zz"};
        QTest::newRow("first of a repeated id") << "a" << "dup" << QStringList{"a", "b", "c", "d", "dup"};
    }

    void segmentsBetween()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QStringList, range);
        QList<TranscriptSegment> all;
        for (const char *id : {"a", "b", "c", "d", "dup", "e", "dup"})
            all.emplace_back().id = QString::fromLatin1(id);
        QCOMPARE(::segmentsBetween(all, from, to), setOf(range));
    }

    void shiftClickAnchor_data()
    {
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<QStringList>("highlighted");
        QTest::addColumn<QString>("anchor"); // empty: none
        QTest::newRow("nothing") << QStringList{} << QStringList{} << "";
        QTest::newRow("smallest selected") << QStringList{"s9", "s2", "s5"} << QStringList{"s1"} << "s2";
        QTest::newRow("highlight when nothing selected") << QStringList{} << QStringList{"s7", "s3"} << "s3";
    }

    void shiftClickAnchor()
    {
        QFETCH(QStringList, selected);
        QFETCH(QStringList, highlighted);
        QFETCH(QString, anchor);
        QCOMPARE(::shiftClickAnchor(setOf(selected), setOf(highlighted)).value_or(QString()), anchor);
    }

    void flow_data()
    {
        QTest::addColumn<QList<QSizeF>>("sizes");
        QTest::addColumn<qreal>("available");
        QTest::addColumn<qreal>("spacing");
        QTest::addColumn<QList<QPointF>>("origins");
        QTest::addColumn<qreal>("height");
        QTest::newRow("wraps") << QList<QSizeF>{{60, 10}, {50, 10}, {40, 10}} << 100.0 << 0.0 << QList<QPointF>{{0, 0}, {0, 10}, {50, 10}} << 20.0;
        QTest::newRow("spacing both ways") << QList<QSizeF>{{45, 10}, {45, 10}, {10, 10}} << 100.0 << 5.0 << QList<QPointF>{{0, 0}, {50, 0}, {0, 15}} << 25.0;
        QTest::newRow("wider than the width, alone and unsplit")
            << QList<QSizeF>{{20, 10}, {250, 10}, {20, 10}} << 100.0 << 0.0 << QList<QPointF>{{0, 0}, {0, 10}, {0, 20}} << 30.0;
        QTest::newRow("exact fit stays") << QList<QSizeF>{{50, 10}, {50, 10}} << 100.0 << 0.0 << QList<QPointF>{{0, 0}, {50, 0}} << 10.0;
        QTest::newRow("tallest child sets the row") << QList<QSizeF>{{40, 10}, {40, 25}, {40, 10}} << 100.0 << 0.0 << QList<QPointF>{{0, 0}, {40, 0}, {0, 25}} << 35.0;
        QTest::newRow("nothing") << QList<QSizeF>{} << 100.0 << 0.0 << QList<QPointF>{} << 0.0;
        QTest::newRow("unbounded: one row") << QList<QSizeF>{{1000, 10}, {5000, 10}, {3, 10}} << WrappingHStack::unbounded << 2.0
                                            << QList<QPointF>{{0, 0}, {1002, 0}, {6004, 0}} << 10.0;
    }

    void flow()
    {
        QFETCH(QList<QSizeF>, sizes);
        QFETCH(qreal, available);
        QFETCH(qreal, spacing);
        QFETCH(QList<QPointF>, origins);
        QFETCH(qreal, height);
        const FlowPlacement placement = WrappingHStack{spacing}.arrange(sizes, available);
        QCOMPARE(placement.origins, origins);
        QCOMPARE(placement.size.width(), available);
        QCOMPARE(placement.size.height(), height);
    }

    // Chips are measured word by word from a cache; the sum must match the sentence.
    void wordWidthsAddUpToTheSentence_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("repeated words") << "the the the the the ";
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
