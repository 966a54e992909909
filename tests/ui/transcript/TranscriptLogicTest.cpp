#include "ui/transcript/SegmentSelection.h"
#include "ui/transcript/SpeakerRun.h"
#include "ui/transcript/TranscriptSource.h"
#include "ui/transcript/WrappingHStack.h"

#include <QTest>

namespace {

TranscriptSegment segment(const QString &id, const QString &speaker = {})
{
    TranscriptSegment s;
    s.id = id;
    s.speaker = speaker;
    s.text = QStringLiteral("words of ") + id;
    s.timecode = QStringLiteral("10:00:00:") + id.right(2).rightJustified(2, u'0');
    return s;
}

QList<TranscriptSegment> segments(const QStringList &ids)
{
    QList<TranscriptSegment> list;
    for (const QString &id : ids)
        list.append(segment(id));
    return list;
}

ShootMarker marker(const QString &id, int minute, std::optional<QString> raw)
{
    ShootMarker m;
    m.id = id;
    m.markerType = QStringLiteral("log");
    m.timecode = QStringLiteral("10:%1:00:00").arg(minute, 2, 10, QChar(u'0'));
    m.raw = std::move(raw);
    m.createdAt = QDateTime(QDate(2026, 11, 20), QTime(9, minute), Qt::UTC);
    return m;
}

QSet<QString> setOf(const QStringList &ids)
{
    return QSet<QString>(ids.cbegin(), ids.cend());
}

QList<QSizeF> sizes(const QList<qreal> &widths, qreal height = 10)
{
    QList<QSizeF> list;
    for (qreal w : widths)
        list.append(QSizeF(w, height));
    return list;
}

} // namespace

class TranscriptLogicTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void speakerRuns_data()
    {
        QTest::addColumn<QStringList>("speakers");
        QTest::addColumn<QStringList>("runSpeakers");
        QTest::addColumn<QList<int>>("runSizes");
        QTest::newRow("empty") << QStringList{} << QStringList{} << QList<int>{};
        QTest::newRow("A A B A") << QStringList{"A", "A", "B", "A"} << QStringList{"A", "B", "A"} << QList<int>{2, 1, 1};
        QTest::newRow("exact comparison") << QStringList{"SPEAKER A", "Speaker A", "Speaker A"} << QStringList{"SPEAKER A", "Speaker A"} << QList<int>{1, 2};
        QTest::newRow("unnamed speaker") << QStringList{"", ""} << QStringList{""} << QList<int>{2};
    }

    void speakerRuns()
    {
        QFETCH(QStringList, speakers);
        QFETCH(QStringList, runSpeakers);
        QFETCH(QList<int>, runSizes);
        QList<TranscriptSegment> input;
        for (qsizetype i = 0; i < speakers.size(); ++i)
            input.append(segment(QString::number(i + 10), speakers[i]));
        const QList<SpeakerRun> runs = buildSpeakerRuns(input);
        QCOMPARE(runs.size(), runSpeakers.size());
        qsizetype first = 0;
        for (qsizetype r = 0; r < runs.size(); ++r) {
            QCOMPARE(runs[r].speaker, runSpeakers[r]);
            QCOMPARE(runs[r].segments.size(), runSizes[r]);
            QCOMPARE(runs[r].timecode, input[first].timecode);
            QCOMPARE(runs[r].segments.first().id, input[first].id);
            first += runSizes[r];
        }
    }

    void speakerColour_data()
    {
        QTest::addColumn<QString>("speaker");
        QTest::addColumn<int>("index");
        QTest::newRow("A green") << "SPEAKER A" << 0;
        QTest::newRow("B blue") << "SPEAKER B" << 1;
        QTest::newRow("F wraps to green") << "SPEAKER F" << 0;
        QTest::newRow("title case shares the colour") << "Speaker A" << 0;
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("lower case a is 32 from A") << "speaker a" << 2;
        QTest::newRow("digit below A") << "SPEAKER 1" << 1;
        QTest::newRow("not ASCII") << QStringLiteral("Zoë") << 0;
    }

    void speakerColour()
    {
        QFETCH(QString, speaker);
        QFETCH(int, index);
        QCOMPARE(speakerColor(speaker), speakerColors[std::size_t(index)]);
    }

    void speakerLabels_data()
    {
        QTest::addColumn<QString>("speaker");
        QTest::addColumn<QString>("label");
        QTest::newRow("upper-case prefix") << "SPEAKER B" << "Speaker B";
        QTest::newRow("title case kept") << "Speaker A" << "Speaker Speaker A";
        QTest::newRow("empty") << "" << "Speaker A";
        QTest::newRow("prefix only") << "SPEAKER " << "Speaker A";
        QTest::newRow("every occurrence") << "SPEAKER SPEAKER C" << "Speaker C";
        QTest::newRow("blanks trimmed") << "  SPEAKER  D  " << "Speaker D";
    }

    void speakerLabels()
    {
        QFETCH(QString, speaker);
        QFETCH(QString, label);
        QCOMPARE(speakerLabel(speaker), label);
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
        QVERIFY(!built[0].highlighted);
        QVERIFY(!built[0].wordTimings);
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
        QTest::newRow("remove unselected is harmless") << QStringList{"remove x"} << QStringList{} << QStringList{};
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

    // An unknown grade falls back to the ungraded colour; a range on offer outshines the selection.
    void chipColoursAndStates()
    {
        const Rgb ungraded = highlightColor("x", {});
        QCOMPARE(highlightColor("x", QHash<QString, QString>{{"x", "D"}}), ungraded);
        QVERIFY(!(highlightColor("x", QHash<QString, QString>{{"x", "A"}}) == ungraded));
        QCOMPARE(chipState("x", {"x"}, {}), ChipState::Selected);
        QCOMPARE(chipState("x", {"x"}, {"x"}), ChipState::Highlighted);
        QCOMPARE(chipState("y", {"x"}, {}), ChipState::Plain);
    }

    void segmentsBetween_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QStringList>("range");
        QTest::newRow("forward") << "b" << "d" << QStringList{"b", "c", "d"};
        QTest::newRow("backward") << "d" << "b" << QStringList{"b", "c", "d"};
        QTest::newRow("same") << "c" << "c" << QStringList{"c"};
        QTest::newRow("unknown anchor") << "zz" << "c" << QStringList{"c"};
        QTest::newRow("unknown target") << "a" << "zz" << QStringList{"zz"};
        QTest::newRow("first of a repeated id") << "a" << "dup" << QStringList{"a", "b", "c", "d", "dup"};
    }

    void segmentsBetween()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QStringList, range);
        const auto all = segments({"a", "b", "c", "d", "dup", "e", "dup"});
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
        const auto found = ::shiftClickAnchor(setOf(selected), setOf(highlighted));
        QCOMPARE(found.value_or(QString()), anchor);
    }

    void selectsCount_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << 0 << "0 selects";
        QTest::newRow("1") << 1 << "1 select";
        QTest::newRow("2") << 2 << "2 selects";
    }

    void selectsCount()
    {
        QFETCH(int, count);
        QFETCH(QString, text);
        QCOMPARE(selectsCountText(count), text);
    }

    void flow_data()
    {
        QTest::addColumn<QList<qreal>>("widths");
        QTest::addColumn<qreal>("available");
        QTest::addColumn<qreal>("spacing");
        QTest::addColumn<QList<QPointF>>("origins");
        QTest::addColumn<QSizeF>("size");
        QTest::newRow("wraps") << QList<qreal>{60, 50, 40} << 100.0 << 0.0 << QList<QPointF>{{0, 0}, {0, 10}, {50, 10}} << QSizeF(100, 20);
        QTest::newRow("spacing both ways") << QList<qreal>{45, 45, 10} << 100.0 << 5.0 << QList<QPointF>{{0, 0}, {50, 0}, {0, 15}} << QSizeF(100, 25);
        QTest::newRow("wider than the width, alone and unsplit")
            << QList<qreal>{20, 250, 20} << 100.0 << 0.0 << QList<QPointF>{{0, 0}, {0, 10}, {0, 20}} << QSizeF(100, 30);
        QTest::newRow("exact fit stays") << QList<qreal>{50, 50} << 100.0 << 0.0 << QList<QPointF>{{0, 0}, {50, 0}} << QSizeF(100, 10);
        QTest::newRow("nothing") << QList<qreal>{} << 100.0 << 0.0 << QList<QPointF>{} << QSizeF(100, 0);
    }

    void flow()
    {
        QFETCH(QList<qreal>, widths);
        QFETCH(qreal, available);
        QFETCH(qreal, spacing);
        QFETCH(QList<QPointF>, origins);
        QFETCH(QSizeF, size);
        const FlowPlacement placement = WrappingHStack{spacing}.arrange(sizes(widths), available);
        QCOMPARE(placement.origins, origins);
        QCOMPARE(placement.size, size);
    }

    void flowTakesTheTallestChildPerRow()
    {
        const FlowPlacement placement = WrappingHStack{0}.arrange(
            {QSizeF(40, 10), QSizeF(40, 25), QSizeF(40, 10)}, 100);
        QCOMPARE(placement.origins[2], QPointF(0, 25));
        QCOMPARE(placement.size.height(), 35.0);
    }

    void flowWithoutWidthIsOneUnboundedRow()
    {
        const FlowPlacement placement = WrappingHStack{2}.arrange(sizes({1000, 5000, 3}));
        QCOMPARE(placement.origins.last(), QPointF(6004, 0));
        QVERIFY(qIsInf(placement.size.width()));
        QCOMPARE(placement.size.height(), 10.0);
    }
};

QTEST_APPLESS_MAIN(TranscriptLogicTest)
#include "TranscriptLogicTest.moc"
