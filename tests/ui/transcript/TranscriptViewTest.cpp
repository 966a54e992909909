#include "TranscriptDriver.h"
#include "ui/transcript/SelectsModel.h"
#include "ui/transcript/TranscriptView.h"
#include "ui/transcript/WordWidthCache.h"

#include <QCoro/QCoroSignal>
#include <QLabel>
#include <QToolButton>
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

enum class Answer { Transcript, Empty, Failure };

ShootSession sessionWithMarker(const QString &markerText)
{
    ShootSession session;
    session.id = session.shareToken = QStringLiteral("share-42");
    ShootMarker &m = session.markers.emplace_back();
    m.id = QStringLiteral("m1");
    m.markerType = QStringLiteral("soundbite");
    m.timecode = QStringLiteral("10:01:00:00");
    m.raw = markerText;
    return session;
}

// The view on a session with one marker, the service answering the fetch as told.
struct Fixture {
    explicit Fixture(Answer answer = Answer::Transcript, const QString &markerText = "We built it.")
        : view(sessionWithMarker(markerText), &selects,
               [this, answer](const QString &token) -> QCoro::Task<QList<TranscriptSegment>> {
                   requestedTokens.append(token);
                   if (holdFetch)
                       co_await qCoro(&gate, &FetchGate::opened);
                   if (answer == Answer::Failure)
                       throw std::runtime_error("Invalid server response");
                   co_return answer == Answer::Empty ? QList<TranscriptSegment>{} : interview();
               })
    {
        view.resize(420, 600);
    }

    [[nodiscard]] bool showLoaded()
    {
        view.show();
        return QTest::qWaitFor([this] { return !view.isLoadingTranscript(); }, screenWait);
    }

    bool labelShown(const QString &text) const
    {
        const QLabel *label = withText<QLabel>(&view, text);
        return label && label->isVisibleTo(&view);
    }

    QSet<QString> selected() const { return selects.selectedSegmentIds(); }

    FetchGate gate;
    bool holdFetch = false;
    QStringList requestedTokens;
    SelectsModel selects;
    TranscriptView view;
};

// The menu's entries, "✓" after the one with the check mark, "--" for a separator.
QStringList menuEntries(const QMenu *menu)
{
    QStringList entries;
    for (const QAction *a : menu->actions())
        entries.append(a->isSeparator() ? "--" : a->text() + (a->icon().isNull() ? "" : " ✓"));
    return entries;
}

} // namespace

class TranscriptViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadsOnFirstShowingOnly()
    {
        Fixture f;
        f.holdFetch = true;
        QVERIFY(f.requestedTokens.isEmpty());
        f.view.show();
        QVERIFY(f.view.isLoadingTranscript() && f.labelShown("Loading transcript..."));
        QCOMPARE(f.requestedTokens, QStringList{"share-42"});

        Q_EMIT f.gate.opened();
        QTRY_VERIFY2_WITH_TIMEOUT(!f.view.isLoadingTranscript(), "the released fetch did not end the loading", screenWait);
        QCOMPARE(f.view.transcriptSegments().size(), 5);
        QVERIFY(!f.labelShown("Loading transcript..."));
        QCOMPARE(f.view.findChildren<SpeakerRunView *>().size(), 3);
        f.view.hide();
        f.view.show();
        QCOMPARE(f.requestedTokens.size(), 1);
    }

    void fallsBackToMarkers_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("markerText");
        QTest::addColumn<bool>("fromMarker"); // else nothing to show
        QTest::newRow("empty answer") << int(Answer::Empty) << "We built it." << true;
        QTest::newRow("failed fetch") << int(Answer::Failure) << "We built it." << true;
        QTest::newRow("failed fetch, no marker words") << int(Answer::Failure) << "[no speech]" << false;
    }

    void fallsBackToMarkers()
    {
        QFETCH(int, answer);
        QFETCH(QString, markerText);
        QFETCH(bool, fromMarker);
        Fixture f(Answer(answer), markerText);
        QVERIFY2(f.showLoaded(), "the transcript did not finish loading");
        QCOMPARE(f.view.transcriptSegments().size(), fromMarker ? 1 : 0);
        QCOMPARE(f.labelShown("No transcript available"), !fromMarker);
        QCOMPARE(runOf(&f.view, "m1") != nullptr, fromMarker);
    }

    void rangeOffer_data()
    {
        QTest::addColumn<bool>("accept");
        QTest::newRow("select the range") << true;
        QTest::newRow("dismiss the offer") << false;
    }

    void rangeOffer()
    {
        QFETCH(bool, accept);
        Fixture f;
        QVERIFY2(f.showLoaded(), "the transcript did not finish loading");
        QVERIFY(click(&f.view, "s2", Qt::ShiftModifier)); // nothing to anchor on: a plain click
        QVERIFY(!f.view.showHighlightButton());
        QVERIFY(chooseFromMenu(&f.view, "s2", "Grade C"));
        QVERIFY(click(&f.view, "s5", Qt::ShiftModifier)); // across runs
        QCOMPARE(f.view.highlightRangeIds(), (QSet<QString>{"s2", "s3", "s4", "s5"}));
        QCOMPARE(f.selected(), QSet<QString>{"s2"});
        QPushButton *offer = offerButton(&f.view);
        QVERIFY(offer && offer->isVisibleTo(&f.view));
        QCOMPARE(offer->text(), "Select 4");
        // A further shift-click replaces the range rather than adding to it.
        QVERIFY(click(&f.view, "s4", Qt::ShiftModifier));
        QCOMPARE(f.view.highlightRangeIds(), (QSet<QString>{"s2", "s3", "s4"}));
        QCOMPARE(offer->text(), "Select 3");

        QAbstractButton *answer = accept ? static_cast<QAbstractButton *>(offer) : withText<QToolButton>(&f.view, QString()); // the offer's icon-only close
        QTest::mouseClick(answer, Qt::LeftButton);
        QCOMPARE(f.selected(), accept ? (QSet<QString>{"s2", "s3", "s4"}) : QSet<QString>{"s2"});
        QCOMPARE(f.selects.segmentGrades(), (QHash<QString, QString>{{"s2", "C"}}));
        QVERIFY(f.view.highlightRangeIds().isEmpty() && !offer->isVisibleTo(&f.view));
    }

    void gradingFromTheMenu()
    {
        Fixture f;
        QVERIFY2(f.showLoaded(), "the transcript did not finish loading");
        QMenu *menu = openMenu(&f.view, "s4");
        QVERIFY2(menu, "no context menu on s4");
        QCOMPARE(menuEntries(menu), (QStringList{"Grade A", "Grade B", "Grade C", "--"}));
        menu->close();
        QVERIFY(chooseFromMenu(&f.view, "s1", "Grade A"));
        QVERIFY(chooseFromMenu(&f.view, "s4", "Grade B"));
        QCOMPARE(f.selected(), (QSet<QString>{"s1", "s4"}));
        menu = openMenu(&f.view, "s4");
        QVERIFY2(menu, "no context menu on s4");
        QCOMPARE(menuEntries(menu), (QStringList{"Grade A", "Grade B ✓", "Grade C", "--", "Remove select"}));
        menu->close();
        QVERIFY(chooseFromMenu(&f.view, "s4", "Remove select"));
        QCOMPARE(f.selected(), QSet<QString>{"s1"});
        QCOMPARE(f.selects.segmentGrades(), (QHash<QString, QString>{{"s1", "A"}}));
    }

    void followsTheHostsSelection()
    {
        Fixture f;
        QVERIFY2(f.showLoaded(), "the transcript did not finish loading");
        SegmentSelection chosen;
        chosen.selectedSegmentIds = {"s1", "gone-from-transcript"};
        f.selects.setSelection(chosen);
        QVERIFY(f.labelShown("2 selects"));
        QVERIFY(click(&f.view, "s1"));
        QCOMPARE(f.selected(), QSet<QString>{"gone-from-transcript"});
        QVERIFY(f.labelShown("1 select"));
    }

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
        QVERIFY(qAbs(cache.width(text) - QFontMetricsF(font).horizontalAdvance(text)) < 1.0);
    }

    void secondaryTextFollowsAPaletteSwitch()
    {
        Fixture f;
        QVERIFY2(f.showLoaded(), "the transcript did not finish loading");
        const QPalette before = QApplication::palette();
        QPalette dark = before;
        dark.setColor(QPalette::WindowText, QColor(236, 236, 240));
        QApplication::setPalette(dark);
        const QToolButton *clearAll = withText<QToolButton>(&f.view, "Clear all");
        QTRY_VERIFY2_WITH_TIMEOUT(clearAll->palette().color(QPalette::ButtonText).rgb() == QColor(236, 236, 240).rgb(),
                                  "the secondary text did not follow the new palette", screenWait);
        QVERIFY(clearAll->palette().color(QPalette::ButtonText).alpha() < 255);
        QApplication::setPalette(before);
    }
};

QTEST_MAIN(TranscriptViewTest)
#include "TranscriptViewTest.moc"
