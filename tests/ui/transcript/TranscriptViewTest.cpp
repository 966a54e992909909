#include "TranscriptDriver.h"
#include "ui/transcript/SelectsModel.h"
#include "ui/transcript/SpeakerRunView.h"
#include "ui/transcript/TranscriptView.h"
#include "ui/transcript/WordWidthCache.h"

#include <QApplication>
#include <QCoro/QCoroSignal>
#include <QContextMenuEvent>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStyle>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <stdexcept>

namespace {

// Holds a fetch open until the test lets it finish, so the loading state can be looked at.
class FetchGate : public QObject
{
    Q_OBJECT
Q_SIGNALS:
    void opened();
};

struct Line {
    const char *id;
    const char *speaker;
    const char *text;
};

QList<TranscriptSegment> transcript(std::initializer_list<Line> lines)
{
    QList<TranscriptSegment> segments;
    int second = 0;
    for (const Line &line : lines) {
        TranscriptSegment s;
        s.id = QString::fromUtf8(line.id);
        s.speaker = QString::fromUtf8(line.speaker);
        s.text = QString::fromUtf8(line.text);
        s.timecode = QStringLiteral("10:00:%1:00").arg(second += 3, 2, 10, QChar(u'0'));
        segments.append(s);
    }
    return segments;
}

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
    explicit Fixture(QList<TranscriptSegment> segments, Answer answer = Answer::Transcript,
                     ShootSession session = sessionWithMarkers())
        : view(session, &selects,
               [this, segments, answer](const QString &token)
                   -> QCoro::Task<QList<TranscriptSegment>> {
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

    SpeakerRunView *runOf(const QString &segmentId) const { return TranscriptDriver::runOf(&view, segmentId); }
    void click(const QString &segmentId, Qt::KeyboardModifiers modifiers = {}) { TranscriptDriver::click(&view, segmentId, modifiers); }
    QMenu *openMenu(const QString &segmentId) { return TranscriptDriver::openMenu(&view, segmentId); }
    void chooseFromMenu(const QString &segmentId, const QString &entry) { TranscriptDriver::chooseFromMenu(&view, segmentId, entry); }
    QPushButton *offerButton() const { return TranscriptDriver::offerButton(&view); }
    QToolButton *toolButton(const QString &text) const { return TranscriptDriver::toolButton(&view, text); }

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

QPalette fusionPalette(bool dark)
{
    if (!dark)
        return QApplication::style()->standardPalette();
    QPalette p;
    const QColor window(36, 36, 38), base(28, 28, 30), text(236, 236, 240);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, QColor(52, 52, 56));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::Highlight, QColor(93, 96, 242));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::PlaceholderText, QColor(140, 140, 146));
    return p;
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
        SpeakerRunView *run = f.runOf(QStringLiteral("m1"));
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

    void laterRunsSitLowerAndShareTheSpeakerColour()
    {
        Fixture f(interview());
        f.showLoaded();
        const QList<SpeakerRunView *> runs = f.view.findChildren<SpeakerRunView *>();
        QCOMPARE(runs[2]->run().speaker, runs[0]->run().speaker);
        QCOMPARE(runs[2]->chipRect("s6").top() - runs[0]->chipRect("s1").top(), 8);
    }

    void clickTogglesAndTheBarCounts()
    {
        Fixture f(interview());
        f.showLoaded();
        QVERIFY(!f.toolButton("Clear all")->isVisibleTo(&f.view));
        f.click("s3");
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s3"}));
        QVERIFY(f.labelShown("1 select"));
        f.click("s6");
        QVERIFY(f.labelShown("2 selects"));
        f.click("s3");
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s6"}));
        QVERIFY(f.labelShown("1 select"));
    }

    void clearAllEmptiesSelectsAndGrades()
    {
        Fixture f(interview());
        f.showLoaded();
        f.click("s1");
        f.chooseFromMenu("s2", "Grade A");
        QTest::mouseClick(f.toolButton("Clear all"), Qt::LeftButton);
        QVERIFY(f.selects.selectedSegmentIds().isEmpty());
        QVERIFY(f.selects.segmentGrades().isEmpty());
        QVERIFY(!f.toolButton("Clear all")->isVisibleTo(&f.view));
    }

    void shiftClickWithoutAnchorIsAPlainClick()
    {
        Fixture f(interview());
        f.showLoaded();
        f.click("s4", Qt::ShiftModifier);
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s4"}));
        QVERIFY(!f.view.showHighlightButton());
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
        QPushButton *offer = f.offerButton();
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

    void shiftClickAnchorsOnTheHighlightWhenNothingIsSelected()
    {
        Fixture f(interview());
        f.showLoaded();
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
        QMenu *menu = f.openMenu("s4");
        QCOMPARE(menuEntries(menu), (QStringList{"Grade A", "Grade B", "Grade C", "--"}));
        menu->close();

        f.chooseFromMenu("s4", "Grade B");
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s4"}));
        QCOMPARE(f.selects.segmentGrades().value("s4"), QStringLiteral("B"));

        menu = f.openMenu("s4");
        QCOMPARE(menuEntries(menu),
                 (QStringList{"Grade A", "Grade B", "Grade C", "--", "Remove select"}));
        QVERIFY(menu->actions()[0]->icon().isNull());
        QVERIFY(!menu->actions()[1]->icon().isNull());
        menu->close();

        f.chooseFromMenu("s4", "Grade B");
        QCOMPARE(f.selects.selectedSegmentIds(), setOf({"s4"}));
        QVERIFY(f.selects.segmentGrades().isEmpty());
    }

    void everyDeselectDropsTheGrade_data()
    {
        QTest::addColumn<bool>("byMenu");
        QTest::newRow("plain click") << false;
        QTest::newRow("Remove select") << true;
    }

    void everyDeselectDropsTheGrade()
    {
        QFETCH(bool, byMenu);
        Fixture f(interview());
        f.showLoaded();
        f.chooseFromMenu("s5", "Grade A");
        f.chooseFromMenu("s1", "Grade C");
        if (byMenu)
            f.chooseFromMenu("s5", "Remove select");
        else
            f.click("s5");
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

    void aLongUtteranceSitsAloneUnwrapped()
    {
        const QByteArray longText = QByteArray("endless ").repeated(80);
        Fixture f(transcript({{"short", "A", "Yes."}, {"long", "A", longText.constData()},
                              {"after", "A", "Right."}}));
        f.showLoaded();
        SpeakerRunView *run = f.runOf("long");
        const QRect shortChip = run->chipRect("short");
        const QRect longChip = run->chipRect("long");
        const QRect afterChip = run->chipRect("after");
        QVERIFY(longChip.width() > f.view.width());
        QVERIFY(longChip.top() > shortChip.top());
        QVERIFY(afterChip.top() > longChip.top());
        QCOMPARE(afterChip.left(), shortChip.left());
    }

    void wordWidthsAddUpToTheSentence_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("sentence") << QStringLiteral("It started in my grandfather's workshop. ");
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
        QApplication::setPalette(fusionPalette(true));
        QApplication::processEvents(); // the palette reaches the widgets through posted events
        const QColor clearAll = f.toolButton("Clear all")->palette().color(QPalette::ButtonText);
        QApplication::setPalette(before);
        QCOMPARE(clearAll.rgb(), QColor(236, 236, 240).rgb());
        QVERIFY(clearAll.alpha() < 255);
    }

    void loadingAndEmptyScreenshot()
    {
        ShootSession noText = sessionWithMarkers();
        noText.markers.clear();
        Fixture loading(interview());
        Fixture empty({}, Answer::Empty, noText);
        loading.holdFetch = true;
        loading.view.show();
        empty.showLoaded();
        QApplication::processEvents();
        QVERIFY(loading.view.isLoadingTranscript());
        const QString dir = qEnvironmentVariable("VORLIX_SCREENSHOT_DIR");
        for (Fixture *f : {&loading, &empty}) {
            const QPixmap shot = f->view.grab(QRect(0, 0, 420, 140));
            QVERIFY(!shot.isNull());
            if (!dir.isEmpty()) {
                const QString name = f == &loading ? QStringLiteral("transcript-loading.png")
                                                   : QStringLiteral("transcript-empty.png");
                QVERIFY(QDir().mkpath(dir) && shot.save(QDir(dir).filePath(name)));
            }
        }
        Q_EMIT loading.gate.opened();
        QTRY_VERIFY(!loading.view.isLoadingTranscript());
    }

    void screenshots_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }

    // Renders the transcript with graded selects and a range on offer; with
    // VORLIX_SCREENSHOT_DIR set the pictures are kept there.
    void screenshots()
    {
        QFETCH(bool, dark);
        QApplication::setStyle(QStringLiteral("Fusion"));
        QApplication::setPalette(fusionPalette(dark));
        // The anchor of a shift-click is the smallest selected id, so "a6" anchors the range.
        Fixture f(transcript({
            {"q1", "SPEAKER A", "So tell me where it started."},
            {"r1", "SPEAKER B", "It started in my grandfather's workshop, in the winter of 1986."},
            {"r2", "SPEAKER B", "He let me sweep the shavings and I thought that was the best job"
                                " in the world."},
            {"r3", "SPEAKER B", "I was nine."},
            {"r4", "SPEAKER B", "The smell of pine tar still takes me straight back there."},
            {"q2", "SPEAKER A", "And the first boat you built yourself?"},
            {"r5", "SPEAKER C", "Oh, it sank. Twice."},
            {"a6", "SPEAKER C", "The second time with my father in it, which he never let me forget."},
            {"r7", "SPEAKER C", "But the third one floated, and we sailed it to the island that"
                                " summer."},
        }));
        f.view.resize(560, 600);
        f.view.setAutoFillBackground(true);
        f.showLoaded();
        f.chooseFromMenu("r1", "Grade A");
        f.chooseFromMenu("r3", "Grade B");
        f.chooseFromMenu("r5", "Grade C");
        f.click("r4");
        f.click("a6");
        f.click("r7", Qt::ShiftModifier);
        QCOMPARE(f.view.highlightRangeIds(), setOf({"a6", "r7"}));
        f.view.resize(560, f.view.heightForWidth(560) > 0 ? f.view.heightForWidth(560)
                                                           : f.view.sizeHint().height());
        QApplication::processEvents();
        QMenu *menu = f.openMenu("r3");
        menu->adjustSize();
        const QString theme = dark ? QStringLiteral("dark") : QStringLiteral("light");
        const QList<std::pair<QString, QPixmap>> shots{
            {QStringLiteral("transcript-%1.png").arg(theme), f.view.grab()},
            {QStringLiteral("transcript-menu-%1.png").arg(theme), menu->grab()},
        };
        menu->close();
        const QString dir = qEnvironmentVariable("VORLIX_SCREENSHOT_DIR");
        for (const auto &[name, shot] : shots) {
            QVERIFY(!shot.isNull());
            if (!dir.isEmpty())
                QVERIFY(QDir().mkpath(dir) && shot.save(QDir(dir).filePath(name)));
        }
    }
};

QTEST_MAIN(TranscriptViewTest)
#include "TranscriptViewTest.moc"
