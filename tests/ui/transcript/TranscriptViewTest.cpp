#include "TranscriptDriver.h"
#include "ui/transcript/SelectsModel.h"
#include "ui/transcript/SpeakerRunView.h"
#include "ui/transcript/TranscriptView.h"
#include "ui/transcript/WordWidthCache.h"

#include <QCoro/QCoroSignal>
#include <QLabel>
#include <stdexcept>

using namespace TranscriptDriver;

namespace {

// Holds a fetch open until the test lets it finish, so the loading state can be looked at.
class FetchGate : public QObject
{
    Q_OBJECT
Q_SIGNALS:
    void opened();
};

// Speakers A, A, B, A: three runs, the last one a second run of A.
QList<TranscriptSegment> interview()
{
    return transcript({
        {"s1", "SPEAKER A", "So tell me where it started."},
        {"s2", "SPEAKER A", "Take your time."},
        {"s3", "SPEAKER B", "It started in my grandfather's workshop, in the winter of 1986."},
        {"s4", "SPEAKER B", "He let me sweep the shavings."},
        {"s5", "SPEAKER B", "I was nine."},
        {"s6", "SPEAKER A", "And the first boat?"},
        {"s7", "SPEAKER A", "Do you remember it?"},
    });
}

ShootSession sessionWithMarkers()
{
    ShootSession session;
    session.id = session.shareToken = QStringLiteral("share-42");
    session.title = QStringLiteral("Boatyard");
    ShootMarker m;
    m.id = QStringLiteral("m1");
    m.markerType = QStringLiteral("soundbite");
    m.timecode = QStringLiteral("10:01:00:00");
    m.raw = QStringLiteral("We built it from driftwood.");
    m.createdAt = QDateTime(QDate(2026, 11, 20), QTime(9, 0), Qt::UTC);
    session.markers.append(m);
    return session;
}

enum class Answer { Transcript, Empty, Failure };

struct Fixture {
    explicit Fixture(QList<TranscriptSegment> segments, Answer answer = Answer::Transcript, ShootSession session = sessionWithMarkers())
        : view(session, &selects,
               [this, segments, answer](const QString &token) -> QCoro::Task<QList<TranscriptSegment>> {
                   requestedTokens.append(token);
                   if (holdFetch)
                       co_await qCoro(&gate, &FetchGate::opened);
                   if (answer == Answer::Failure)
                       throw std::runtime_error("Invalid server response");
                   co_return answer == Answer::Empty ? QList<TranscriptSegment>{} : segments;
               })
    {
        view.resize(420, 600);
    }

    void showLoaded()
    {
        view.show();
        QTRY_VERIFY(!view.isLoadingTranscript());
    }

    void click(const QString &segmentId, Qt::KeyboardModifiers modifiers = {}) { TranscriptDriver::click(&view, segmentId, modifiers); }
    void chooseFromMenu(const QString &segmentId, const QString &entry) { TranscriptDriver::chooseFromMenu(&view, segmentId, entry); }

    bool labelShown(const QString &text) const
    {
        for (QLabel *label : view.findChildren<QLabel *>()) {
            if (label->text() == text && label->isVisibleTo(&view))
                return true;
        }
        return false;
    }

    FetchGate gate;
    bool holdFetch = false;
    QStringList requestedTokens;
    SelectsModel selects;
    TranscriptView view;
};

QStringList menuEntries(const QMenu *menu)
{
    QStringList entries;
    for (const QAction *a : menu->actions())
        entries.append(a->isSeparator() ? QStringLiteral("--") : a->text());
    return entries;
}

QSet<QString> setOf(const QStringList &ids)
{
    return QSet<QString>(ids.cbegin(), ids.cend());
}

} // namespace

class TranscriptViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadsOnFirstShowingOnly()
    {
        Fixture f(interview());
        f.holdFetch = true;
        QVERIFY(f.requestedTokens.isEmpty());
        f.view.show();
        QVERIFY(f.view.isLoadingTranscript());
        QVERIFY(f.labelShown(QStringLiteral("Loading transcript...")));
        QCOMPARE(f.requestedTokens, QStringList{"share-42"});

        Q_EMIT f.gate.opened();
        QTRY_VERIFY(!f.view.isLoadingTranscript());
        QCOMPARE(f.view.transcriptSegments().size(), 7);
        QVERIFY(!f.labelShown(QStringLiteral("Loading transcript...")));
        QCOMPARE(f.view.findChildren<SpeakerRunView *>().size(), 3);

        f.view.hide();
        f.view.show();
        QCOMPARE(f.requestedTokens.size(), 1);
    }

    void fallsBackToMarkers_data()
    {
        QTest::addColumn<int>("answer");
        QTest::newRow("empty answer") << int(Answer::Empty);
        QTest::newRow("failed fetch") << int(Answer::Failure);
    }

    void fallsBackToMarkers()
    {
        QFETCH(int, answer);
        Fixture f(interview(), Answer(answer));
        f.showLoaded();
        QCOMPARE(f.view.transcriptSegments().size(), 1);
        QCOMPARE(f.view.transcriptSegments().first().id, QStringLiteral("m1"));
        SpeakerRunView *run = runOf(&f.view, QStringLiteral("m1"));
        QVERIFY(run);
        QCOMPARE(run->run().speaker, QString());
    }

    void emptyWhenNeitherServiceNorMarkersHaveText()
    {
        ShootSession session = sessionWithMarkers();
        session.markers.first().raw = QStringLiteral("[no speech]");
        Fixture f({}, Answer::Failure, session);
        f.showLoaded();
        QVERIFY(f.view.transcriptSegments().isEmpty());
        QVERIFY(f.labelShown(QStringLiteral("No transcript available")));
    }

    void shiftClickOffersARangeAcrossRuns_data()
    {
        QTest::addColumn<bool>("accept");
        QTest::newRow("select the range") << true;
        QTest::newRow("dismiss the offer") << false;
    }

    void shiftClickOffersARangeAcrossRuns()
    {
        QFETCH(bool, accept);
        Fixture f(interview());
        f.showLoaded();
        f.chooseFromMenu("s2", "Grade C");
        f.click("s6", Qt::ShiftModifier);
        QCOMPARE(f.view.highlightRangeIds(), setOf({"s2", "s3", "s4", "s5", "s6"}));
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s2"}));
        QPushButton *offer = offerButton(&f.view);
        QVERIFY(offer && offer->isVisibleTo(&f.view));
        QCOMPARE(offer->text(), QStringLiteral("Select 5"));

        // A further shift-click replaces the range rather than adding to it.
        f.click("s4", Qt::ShiftModifier);
        QCOMPARE(f.view.highlightRangeIds(), setOf({"s2", "s3", "s4"}));
        QCOMPARE(offer->text(), QStringLiteral("Select 3"));

        if (accept) {
            QTest::mouseClick(offer, Qt::LeftButton);
            QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s2", "s3", "s4"}));
        } else {
            QToolButton *dismiss = nullptr;
            for (QToolButton *b : f.view.findChildren<QToolButton *>()) {
                if (b->text().isEmpty())
                    dismiss = b;
            }
            QVERIFY(dismiss);
            QTest::mouseClick(dismiss, Qt::LeftButton);
            QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s2"}));
        }
        QCOMPARE(f.selects.segmentGrades(), (QHash<QString, QString>{{"s2", "C"}}));
        QVERIFY(f.view.highlightRangeIds().isEmpty());
        QVERIFY(!f.view.showHighlightButton());
        QVERIFY(!offer->isVisibleTo(&f.view));
    }

    void shiftClickAnchors()
    {
        Fixture f(interview());
        f.showLoaded();
        f.click("s4", Qt::ShiftModifier); // no anchor yet: a plain click
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s4"}));
        QVERIFY(!f.view.showHighlightButton());
        f.click("s4");
        // With nothing selected, the highlighted range anchors the next shift-click.
        f.click("s5");
        f.click("s3", Qt::ShiftModifier);
        f.click("s5"); // deselects the only select; the range stays on offer
        f.click("s7", Qt::ShiftModifier);
        QCOMPARE(f.view.highlightRangeIds(), setOf({"s3", "s4", "s5", "s6", "s7"}));
    }

    void gradingFromTheMenu()
    {
        Fixture f(interview());
        f.showLoaded();
        QMenu *menu = openMenu(&f.view, "s4");
        QCOMPARE(menuEntries(menu), (QStringList{"Grade A", "Grade B", "Grade C", "--"}));
        menu->close();

        f.chooseFromMenu("s4", "Grade B");
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s4"}));
        QCOMPARE(f.selects.segmentGrades().value("s4"), QStringLiteral("B"));

        menu = openMenu(&f.view, "s4");
        QCOMPARE(menuEntries(menu),
                 (QStringList{"Grade A", "Grade B", "Grade C", "--", "Remove select"}));
        QVERIFY(menu->actions()[0]->icon().isNull());
        QVERIFY(!menu->actions()[1]->icon().isNull());
        menu->close();

        f.chooseFromMenu("s4", "Grade B");
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s4"}));
        QVERIFY(f.selects.segmentGrades().isEmpty());

        // "Remove select" deselects and drops the grade; other grades stay.
        f.chooseFromMenu("s4", "Grade A");
        f.chooseFromMenu("s1", "Grade C");
        f.chooseFromMenu("s4", "Remove select");
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s1"}));
        QCOMPARE(f.selects.segmentGrades(), (QHash<QString, QString>{{"s1", "C"}}));
    }

    void followsTheHostsSelection()
    {
        Fixture f(interview());
        f.showLoaded();
        SegmentSelection chosen;
        chosen.selectedSegmentIds = {"s1", "gone-from-transcript"};
        f.selects.setSelection(chosen);
        QVERIFY(f.labelShown("2 selects"));
        f.click("s1");
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"gone-from-transcript"}));
    }

    void wordWidthsAddUpToTheSentence_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("repeated words") << QStringLiteral("the the the the the ");
        QTest::newRow("blanks everywhere") << QStringLiteral("  two  blanks   ");
        QTest::newRow("accents") << QStringLiteral("Zoë went to Malmö, naïvely. ");
        QTest::newRow("tab inside") << QStringLiteral("a\tb c ");
        QTest::newRow("empty") << QString();
    }

    void wordWidthsAddUpToTheSentence()
    {
        QFETCH(QString, text);
        const QFont font = SpeakerRunView::chipFont();
        WordWidthCache cache(font);
        cache.width(QStringLiteral("warm the cache with the same words "));
        QVERIFY(qAbs(cache.width(text) - QFontMetricsF(font).horizontalAdvance(text)) < 1.0);
    }

    void secondaryTextFollowsAPaletteSwitch()
    {
        Fixture f(interview());
        f.showLoaded();
        const QPalette before = QApplication::palette();
        QPalette dark = before;
        dark.setColor(QPalette::WindowText, QColor(236, 236, 240));
        QApplication::setPalette(dark);
        QApplication::processEvents(); // the palette reaches the widgets through posted events
        const QColor clearAll = toolButton(&f.view, "Clear all")->palette().color(QPalette::ButtonText);
        QApplication::setPalette(before);
        QCOMPARE(clearAll.rgb(), QColor(236, 236, 240).rgb());
        QVERIFY(clearAll.alpha() < 255);
    }
};

QTEST_MAIN(TranscriptViewTest)
#include "TranscriptViewTest.moc"
