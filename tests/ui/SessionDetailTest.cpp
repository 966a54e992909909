// The session screen offscreen, its transcript tab included: real state on a temporary
// preferences file, the dialogs played by ScriptedDesktop, the export files really written and
// read back. The transcript service and the analysis are scripted; the editing applications are
// fakes (paths in a temporary folder and a workspace that records launches), since the machine
// has none.
#include "export/RecordingWorkspace.h"
#include "ShellFixture.h"
#include "support/TestData.h"

#include "export/AvidMarkerList.h"
#include "export/CsvMarkerList.h"
#include "export/EditorHandoff.h"
#include "export/FcpXml.h"
#include "export/OtioTimeline.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "export/Subtitles.h"
#include "model/RecordJson.h"
#include "state/SessionLibrary.h"
#include "ui/detail/AnalysisState.h"
#include "ui/detail/CoverageStrip.h"
#include "ui/detail/ExportNotice.h"
#include "ui/detail/MarkerRow.h"
#include "ui/detail/PendingAnalyses.h"
#include "ui/detail/SessionDetailView.h"
#include "ui/detail/SessionHeader.h"
#include "ui/shell/WidgetDesktop.h"
#include "ui/transcript/SelectsModel.h"
#include "ui/transcript/SpeakerRunView.h"
#include "ui/transcript/TranscriptView.h"
#include "ui/widgets/DialogFolders.h"

#include <QContextMenuEvent>
#include <QCoro/QCoroSignal>
#include <QFileDialog>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QToolButton>
#include <QToolTip>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

// Holds the scripted services' answers until the test lets them go.
class Gate : public QObject
{
    Q_OBJECT
Q_SIGNALS:
    void released();
};

// The harbour session (four markers of different kinds) under "session" and its interview
// (speakers A, A, B, B, A: three runs, the last a second run of A) under "transcript", in the
// records' JSON form.
QJsonValue harbourData(const QString &key)
{
    return readTestJson(QStringLiteral("ui/harbour.json"), key);
}

ShootSession harbour() { return RecordJson::sessionFromJson(harbourData(u"session"_s)).value_or(ShootSession()); }
QList<TranscriptSegment> interview() { return RecordJson::segmentsFromJson(harbourData(u"transcript"_s)).value_or(QList<TranscriptSegment>()); }

const ShootSession second = makeSession(u"second"_s, u"Second"_s, QDateTime(QDate(2026, 11, 21), QTime(8, 0), Qt::UTC));

// The editor at the transcript under `root`: clicks on utterance chips and their context menu.
SpeakerRunView *runOf(const QWidget *root, const QString &segmentId)
{
    const QList<SpeakerRunView *> runs = root->findChildren<SpeakerRunView *>();
    const auto found = std::find_if(runs.cbegin(), runs.cend(), [&](SpeakerRunView *run) { return !run->chipRect(segmentId).isEmpty(); });
    return found == runs.cend() ? nullptr : *found;
}

[[nodiscard]] bool click(const QWidget *root, const QString &segmentId, Qt::KeyboardModifiers modifiers = {})
{
    SpeakerRunView *run = runOf(root, segmentId);
    if (run)
        QTest::mouseClick(run, Qt::LeftButton, modifiers, run->chipRect(segmentId).center());
    return run;
}

QMenu *openMenu(const QWidget *root, const QString &segmentId)
{
    SpeakerRunView *run = runOf(root, segmentId);
    if (!run)
        return nullptr;
    const QPoint at = run->chipRect(segmentId).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, run->mapToGlobal(at));
    QApplication::sendEvent(run, &event);
    return root->findChild<QMenu *>();
}

// The menu's entries, "✓" after the one with the check mark, "--" for a separator.
QStringList menuEntries(QMenu *menu)
{
    if (!menu)
        return {u"(no menu)"_s};
    QStringList entries;
    for (const QAction *a : menu->actions())
        entries.append(a->isSeparator() ? u"--"_s : a->text() + (a->icon().isNull() ? "" : " ✓"));
    menu->close();
    return entries;
}

[[nodiscard]] bool chooseFromMenu(const QWidget *root, const QString &segmentId, const QString &entry)
{
    QMenu *menu = openMenu(root, segmentId);
    QAction *action = menu ? withText<QAction>(menu, entry) : nullptr;
    if (action)
        action->trigger();
    if (menu)
        menu->close();
    return action;
}

// Clicks the visible button showing `text`, else picks the Export menu's entry of that name.
[[nodiscard]] bool press(const QWidget *root, const QString &text)
{
    if (QPushButton *button = withText(root, text); button && button->isVisible()) {
        button->click();
        return true;
    }
    QAction *entry = withText<QAction>(root->findChild<QToolButton *>(u"exportMenu"_s)->menu(), text);
    if (entry)
        entry->trigger();
    return entry;
}

// What the control showing `text` writes for the harbour session, which has no clip to probe.
QString documentOf(const QString &text, const QList<TranscriptSegment> &utterances)
{
    if (text.contains(u"Resolve"_s))
        return text.startsWith(u"EDL"_s) ? generateResolveEDL(harbour()) : generateOTIO(harbour());
    if (text.contains(u"Final Cut"_s))
        return generateFCPXML(harbour(), {});
    if (text.startsWith(u"Avid"_s))
        return generateAvidMarkerList(harbour());
    if (text.startsWith(u"CSV"_s))
        return generateMarkerCSV(harbour());
    if (text.contains(u"subtitles"_s))
        return text.startsWith(u"SubRip"_s) ? generateSRT(harbour(), utterances) : generateWebVTT(harbour(), utterances);
    return generatePremiereXML(harbour(), 1);
}

} // namespace

class SessionDetailTest : public QObject
{
    Q_OBJECT

    // The screen on the harbour session. The transcript service answers `transcript` (nullopt:
    // the fetch fails); each analysis run reports progress and waits for the gate.
    struct Screen {
        Screen()
            : root(shell.dir.filePath(u"root"_s)), temp(root + u"/it's tmp"_s), apps(root + u"/Applications"_s)
        {
            QDir().mkpath(temp);
            for (const QString &app : {u"Premiere 2025"_s, u"DaVinci Resolve Studio"_s, u"Final Cut Pro"_s}) // installed; the others are not
                QDir().mkpath(apps + u'/' + app);
            shell.state.setSessions({harbour(), second});
            shell.state.setSelectedSession(harbour());
            SessionDetailEnvironment environment{
                [this](const QString &token) -> QCoro::Task<QList<TranscriptSegment>> {
                    transcriptRequests.append(token);
                    if (holdTranscript)
                        co_await qCoro(&gate, &Gate::released);
                    if (!transcript)
                        throw std::runtime_error("Invalid server response");
                    co_return *transcript;
                },
                [this](ShootSession session, QList<QUrl> files, AnalysisState &analysis) -> QCoro::Task<> {
                    analysed.append(session.id + u' ' + files.first().fileName());
                    analysis.setAnalysing(true);
                    analysis.setAnalyseProgress(u"Extracting audio (1/1): "_s + files.first().fileName());
                    co_await qCoro(&gate, &Gate::released);
                    analysis.appendAnalyseResult(files.first().fileName() + u": 2 audio + 4 visual markers (300 words)"_s);
                    analysis.setAnalysing(false);
                    analysis.setAnalyseProgress(QString());
                },
                {workspace, temp,
                 EditorLocations{{apps + u"/Premiere 2026"_s, apps + u"/Premiere 2025"_s}, {apps + u"/DaVinci Resolve"_s, apps + u"/DaVinci Resolve Studio"_s},
                                 {apps + u"/Final Cut Pro"_s}},
                 ToolLocations::platformDefault()},
                u"shoot.example.org"_s};
            view = std::make_unique<SessionDetailView>(shell.state, shell.desktop, environment, pending);
            view->resize(640, 900);
            view->show();
        }

        QString text(const QString &label) const { return view->findChild<QLabel *>(label)->text(); }
        bool shown(const QString &label) const { return withText<QLabel>(view.get(), label) && withText<QLabel>(view.get(), label)->isVisible(); }
        QSet<QString> selected() const { return view->selects()->selectedSegmentIds(); }

        [[nodiscard]] bool select(const ShootSession &session)
        {
            shell.state.setSelectedSession(session);
            return QTest::qWaitFor([&] { return view->session().id == session.id; }, screenWait);
        }

        void showTab(int index) const
        {
            auto *tabs = view->findChild<QTabBar *>();
            QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(index).center());
        }

        [[nodiscard]] bool showTranscript() const
        {
            showTab(1);
            return QTest::qWaitFor([&] { return runOf(view.get(), u"s1"_s); }, screenWait);
        }

        ShellFixture shell;
        PendingAnalyses pending;
        std::shared_ptr<RecordingWorkspace> workspace = std::make_shared<RecordingWorkspace>();
        std::optional<QList<TranscriptSegment>> transcript = interview();
        bool holdTranscript = false;
        QStringList transcriptRequests;
        QStringList analysed; // "SESSION FILE" per run
        Gate gate;
        QString root;
        QString temp;
        QString apps;
        std::unique_ptr<SessionDetailView> view;
    };

private Q_SLOTS:
    void renaming_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("ending"); // the key that ends it, 0 for the checkmark button
        QTest::addColumn<QString>("title");
        QTest::newRow("Return, trimmed") << u"  Day 2  "_s << int(Qt::Key_Return) << u"Day 2"_s;
        QTest::newRow("checkmark, tabs trimmed") << u"\tDay 3\t"_s << 0 << u"Day 3"_s;
        QTest::newRow("blank cancels") << u"   "_s << int(Qt::Key_Return) << u"Harbour day"_s;
        QTest::newRow("Escape cancels") << u"Day 4"_s << int(Qt::Key_Escape) << u"Harbour day"_s;
    }

    void renaming()
    {
        QFETCH(QString, typed);
        QFETCH(int, ending);
        QFETCH(QString, title);
        Screen screen;
        QLabel *shown = screen.view->findChild<QLabel *>(u"detailTitle"_s);
        QTRY_VERIFY2_WITH_TIMEOUT(shown->text() == u"Harbour day"_s, "the title is not shown", screenWait);
        QTest::mouseDClick(shown, Qt::LeftButton);
        auto *field = screen.view->findChild<QLineEdit *>(u"detailTitleField"_s);
        QVERIFY(screen.view->header()->isRenaming() && field->isVisible() && !shown->isVisible());
        QCOMPARE(field->text(), u"Harbour day"_s);
        field->setText(typed);
        if (ending == 0)
            screen.view->findChild<QToolButton *>(u"renameButton"_s)->click();
        else
            QTest::keyClick(field, Qt::Key(ending));
        QVERIFY(!screen.view->header()->isRenaming());
        QCOMPARE((QStringList{screen.shell.state.sessions().constFirst().title, screen.shell.state.selectedSession()->title}), QStringList(2, title));
        QTRY_VERIFY2_WITH_TIMEOUT(shown->text() == title && shown->isVisible() && !field->isVisible(), "the title row did not come back", screenWait);
    }

    void summaryFootageMarkersAndDeleting()
    {
        Screen screen;
        QTRY_VERIFY2_WITH_TIMEOUT(screen.view->findChildren<MarkerRow *>().size() == 4, "the four marker rows are not shown", screenWait);
        QCOMPARE((QStringList{screen.text(u"markerCount"_s), screen.text(u"clipCount"_s), screen.text(u"tcRange"_s),
                              screen.view->findChild<QTabBar *>()->tabText(0)}),
                 (QStringList{u"4 markers"_s, u"0 clips"_s, u"10:00:01:00 - 10:00:12:00"_s, u"Markers (4)"_s}));
        QVERIFY(!screen.view->findChild<QLabel *>(u"matchedFootageHeading"_s));
        // Only the earmark with heard words shows them; a quote sits between double quotes.
        const QList<MarkerRow *> rows = screen.view->findChildren<MarkerRow *>();
        QCOMPARE(rows.at(0)->shownTexts(), (QStringList{u"Log"_s, u"10:00:01:00"_s, u"Boats come in"_s}));
        QCOMPARE(rows.at(1)->shownTexts(), (QStringList{u"Earmark"_s, u"10:00:05:00"_s, u"\"At dawn\""_s, u"we sailed at dawn"_s}));
        QCOMPARE(rows.at(2)->shownTexts(), (QStringList{u"Earmark"_s, u"10:00:09:00"_s}));
        QCOMPARE(rows.at(3)->shownTexts(), (QStringList{u"Clip"_s, u"10:00:12:00"_s, u"→"_s, u"10:00:20:00"_s}));
        // A row is as tall as its wrapped texts need.
        QVERIFY(rows.at(1)->heightForWidth(200) > rows.at(1)->heightForWidth(600));
        QCOMPARE(rows.at(1)->height(), rows.at(1)->heightForWidth(rows.at(1)->width()));

        ShootSession withClips = harbour();
        MediaClip &clip = withClips.matchedClips.emplace_back();
        clip.id = clip.filename = u"A001.mov"_s;
        clip.duration = 12.6;
        screen.shell.state.setSelectedSession(withClips);
        QTRY_VERIFY2_WITH_TIMEOUT(screen.view->findChild<QLabel *>(u"matchedFootageHeading"_s), "the matched footage is not shown", screenWait);
        QCOMPARE((QStringList{screen.text(u"footageTimecode"_s), screen.text(u"clipCount"_s)}), (QStringList{u"No TC"_s, u"1 clips"_s}));
        QVERIFY(withText<QLabel>(screen.view.get(), u"13s"_s));

        screen.view->findChild<QToolButton *>(u"deleteButton"_s)->click();
        QCOMPARE(screen.shell.desktop.asked, QStringList{u"confirm: Delete this session? | This will remove the session from Vorlix Edit. "
                                                         "Your markers on shoot.example.org are not affected. | Delete"_s});
        QCOMPARE(screen.shell.state.deletedSessionIds(), QSet<QString>{u"harbour"_s});
        QVERIFY(screen.shell.state.sessions().size() == 1 && !screen.shell.state.selectedSession());
    }

    // A refresh rebuilds only the parts whose data changed: the marker rows survive the session
    // assigned again and a sync that brings nothing new (each with a rename, whose header change
    // shows that the refresh ran); new markers replace the rows and leave the footage.
    void refreshRebuildsOnlyWhatChanged()
    {
        Screen screen;
        ShootSession withClip = harbour();
        MediaClip &clip = withClip.matchedClips.emplace_back();
        clip.id = clip.filename = u"A001.mov"_s;
        SessionLibrary library(screen.shell.state);
        screen.shell.state.setSessions({withClip, second});
        screen.shell.state.setSelectedSession(withClip);
        QTRY_VERIFY2_WITH_TIMEOUT(screen.view->findChild<QWidget *>(u"footageRow"_s), "the matched clip is not shown", screenWait);
        const auto markerRows = [&] {
            QList<QPointer<MarkerRow>> rows;
            for (MarkerRow *row : screen.view->findChildren<MarkerRow *>())
                rows.append(row);
            return rows;
        };
        const QList<QPointer<MarkerRow>> rows = markerRows();
        const QPointer<QWidget> footage = screen.view->findChild<QWidget *>(u"footageRow"_s);
        QCOMPARE(rows.size(), 4);

        AppState &state = screen.shell.state;
        const std::pair<QString, std::function<void()>> unchanging[] = {
            {u"Harbour, take two"_s, [&] { state.setSelectedSession(*state.selectedSession()); }}, // a click on the session shown
            {u"Harbour, take three"_s, [&] { library.mergeFetched({harbour(), second}); }},        // a sync with nothing new
        };
        for (const auto &[title, change] : unchanging) {
            change();
            QVERIFY(library.renameSession(u"harbour"_s, title));
            QTRY_VERIFY2_WITH_TIMEOUT(screen.text(u"detailTitle"_s) == title, "the new title is not shown", screenWait);
            QCOMPARE(markerRows(), rows);
        }

        ShootSession fewer = harbour();
        fewer.markers.removeLast();
        library.mergeFetched({fewer, second});
        QTRY_VERIFY2_WITH_TIMEOUT(screen.view->findChildren<MarkerRow *>().size() == 3, "the new markers are not shown", screenWait);
        QVERIFY(std::none_of(rows.cbegin(), rows.cend(), [](const QPointer<MarkerRow> &row) { return row; }));
        QVERIFY(footage);
    }

    // The tab fetches on its first showing; what it shows then: the service's transcript, else
    // the markers' heard words, else a notice (and then it asks again on the next showing).
    void transcriptTab_data()
    {
        QTest::addColumn<int>("answer"); // 0 the transcript, 1 an empty one, 2 a failure
        QTest::addColumn<bool>("markerWords");
        QTest::addColumn<QString>("firstChip");
        QTest::addColumn<int>("fetches"); // after showing the tab twice
        QTest::newRow("transcript") << 0 << true << u"s1"_s << 1;
        QTest::newRow("empty answer") << 1 << true << u"m2"_s << 1;
        QTest::newRow("failed fetch") << 2 << true << u"m2"_s << 1;
        QTest::newRow("failed fetch, no marker words") << 2 << false << QString() << 2;
    }

    void transcriptTab()
    {
        QFETCH(int, answer);
        QFETCH(bool, markerWords);
        QFETCH(QString, firstChip);
        QFETCH(int, fetches);
        Screen screen;
        screen.holdTranscript = true;
        screen.transcript = answer == 0 ? std::optional(interview()) : answer == 1 ? std::optional(QList<TranscriptSegment>()) : std::nullopt;
        if (!markerWords)
            QVERIFY2(screen.select(second), "the screen did not follow the selection");
        QVERIFY(screen.transcriptRequests.isEmpty()); // the markers tab comes first
        screen.showTab(1);
        QTRY_VERIFY2_WITH_TIMEOUT(screen.shown(u"Loading transcript..."_s), "the tab does not show the fetch", screenWait);
        Q_EMIT screen.gate.released();
        QTRY_VERIFY2_WITH_TIMEOUT(!screen.shown(u"Loading transcript..."_s), "the fetch did not end", screenWait);
        const QList<SpeakerRunView *> runs = screen.view->findChildren<SpeakerRunView *>();
        QCOMPARE(runs.size(), answer == 0 ? 3 : markerWords ? 1 : 0);
        QCOMPARE(runs.isEmpty() ? QString() : runs.first()->run().segments.first().id, firstChip);
        QCOMPARE(!runs.isEmpty() && runs.first()->run().speaker.isEmpty(), answer != 0 && markerWords); // the markers' words have no speaker
        QCOMPARE(screen.shown(u"No transcript available"_s), runs.isEmpty());
        screen.showTab(0);
        screen.showTab(1);
        Q_EMIT screen.gate.released();
        QCOMPARE(screen.transcriptRequests, QStringList(fetches, screen.view->session().id));
    }

    void pickingInTheTranscript()
    {
        Screen screen;
        QVERIFY2(screen.showTranscript(), "the transcript did not load");
        const QPointer<QWidget> transcript = screen.view->findChild<QWidget *>(u"transcriptView"_s); // one per session shown
        QCOMPARE(menuEntries(openMenu(transcript, u"s4"_s)), (QStringList{u"Grade A"_s, u"Grade B"_s, u"Grade C"_s, u"--"_s}));
        QVERIFY(click(transcript, u"s2"_s, Qt::ShiftModifier)); // nothing to anchor on: a plain click
        QVERIFY(chooseFromMenu(transcript, u"s2"_s, u"Grade C"_s));
        QCOMPARE(menuEntries(openMenu(transcript, u"s2"_s)), (QStringList{u"Grade A"_s, u"Grade B"_s, u"Grade C ✓"_s, u"--"_s, u"Remove select"_s}));

        // A shift-click offers the range from the smallest select, across runs; a further one
        // replaces the range. Dismissed, then accepted.
        for (const bool accept : {false, true}) {
            QVERIFY(click(transcript, u"s5"_s, Qt::ShiftModifier));
            QPushButton *offer = withText(transcript, u"Select 4"_s);
            QVERIFY2(offer && offer->isVisible(), "no offer of the range s2-s5");
            QVERIFY(click(transcript, u"s4"_s, Qt::ShiftModifier));
            QCOMPARE(offer->text(), u"Select 3"_s);
            QTest::mouseClick(accept ? static_cast<QAbstractButton *>(offer) : withText<QToolButton>(transcript, QString()), Qt::LeftButton);
            QVERIFY(!offer->isVisible());
            QCOMPARE(screen.selected(), accept ? (QSet<QString>{u"s2"_s, u"s3"_s, u"s4"_s}) : QSet<QString>{u"s2"_s});
        }
        QVERIFY(chooseFromMenu(transcript, u"s3"_s, u"Grade A"_s));
        QVERIFY(chooseFromMenu(transcript, u"s2"_s, u"Remove select"_s));
        QCOMPARE(screen.view->selects()->segmentGrades(), (QHash<QString, QString>{{u"s3"_s, u"A"_s}}));

        // The transcript follows a selection the host sets, ids it does not show included.
        SegmentSelection chosen;
        chosen.selectedSegmentIds = {u"s1"_s, u"gone"_s};
        screen.view->selects()->setSelection(chosen);
        QVERIFY(screen.shown(u"2 selects"_s));
        QVERIFY(click(transcript, u"s1"_s));
        QCOMPARE(screen.selected(), QSet<QString>{u"gone"_s});

        // Secondary text is the palette's text colour, part transparent, and follows a switch.
        const QPalette before = QApplication::palette();
        const auto restore = qScopeGuard([&] { QApplication::setPalette(before); });
        QPalette dark = before;
        dark.setColor(QPalette::WindowText, QColor(236, 236, 240));
        QApplication::setPalette(dark);
        const auto secondary = [&] { return withText<QToolButton>(transcript, u"Clear all"_s)->palette().color(QPalette::ButtonText); };
        QTRY_VERIFY2_WITH_TIMEOUT(secondary().rgb() == dark.color(QPalette::WindowText).rgb(), "the secondary text did not follow the palette", screenWait);
        QVERIFY(secondary().alpha() < 255);
    }

    // Tab, selects and analysis belong to a session: an analysis request waits for its session's
    // screen, and a run goes on while another session is shown.
    void eachSessionKeepsItsTabSelectsAndAnalysis()
    {
        Screen screen;
        const auto request = [&](const QString &sessionId, const QString &file) {
            screen.pending.request(sessionId, {QUrl::fromLocalFile(file)});
        };
        QVERIFY2(screen.showTranscript(), "the transcript did not load");
        const QPointer<QWidget> section = screen.view->findChild<QWidget *>(u"selectsSection"_s);
        QVERIFY(!section->isVisible());
        QVERIFY(click(screen.view.get(), u"s1"_s));
        QCOMPARE(screen.text(u"selectsCount"_s), u"1 select ready to export"_s);
        QVERIFY(click(screen.view.get(), u"s2"_s));
        QCOMPARE(screen.text(u"selectsCount"_s), u"2 selects ready to export"_s);
        QVERIFY(section->isVisible());
        request(u"second"_s, u"/footage/B002.mov"_s);
        QVERIFY(screen.analysed.isEmpty() && screen.pending.hasPending(u"second"_s)); // left for that session's screen
        request(u"harbour"_s, u"/footage/A001.mov"_s);
        QCOMPARE(screen.analysed, QStringList{u"harbour A001.mov"_s});
        const QPointer<QPushButton> analyse = screen.view->findChild<QPushButton *>(u"analyseButton"_s);
        QVERIFY(!analyse->isEnabled());
        QCOMPARE(analyse->text(), u"Extracting audio (1/1): A001.mov"_s);

        QVERIFY2(screen.select(second), "the screen did not follow the selection");
        QCOMPARE(screen.view->selectedTab(), u"markers"_s);
        QVERIFY(screen.selected().isEmpty());
        QTRY_VERIFY2_WITH_TIMEOUT(screen.analysed.size() == 2, "the waiting request did not run", screenWait);
        QVERIFY(!screen.pending.hasPending(u"second"_s));
        QCOMPARE(analyse->text(), u"Extracting audio (1/1): B002.mov"_s);

        QVERIFY2(screen.select(harbour()), "the screen did not follow the selection back");
        QCOMPARE(screen.view->selectedTab(), u"transcript"_s);
        QCOMPARE(screen.selected(), (QSet<QString>{u"s1"_s, u"s2"_s}));
        QCOMPARE(analyse->text(), u"Extracting audio (1/1): A001.mov"_s);
        Q_EMIT screen.gate.released();
        QTRY_VERIFY2_WITH_TIMEOUT(analyse && analyse->isEnabled(), "the finished run did not enable the button again", screenWait);
        QCOMPARE(screen.text(u"analysisResult"_s), u"A001.mov: 2 audio + 4 visual markers (300 words)"_s);
        // The screen's own button asks for files only.
        screen.shell.desktop.fileAnswers = {{QUrl::fromLocalFile(u"/footage/C003.mov"_s)}};
        analyse->click();
        QCOMPARE(screen.shell.desktop.asked, QStringList{u"files: Select footage files to analyse"_s});
        QCOMPARE(screen.analysed.last(), u"harbour C003.mov"_s);
        Q_EMIT screen.gate.released();
        withText<QToolButton>(screen.view.get(), u"Clear all"_s)->click();
        QVERIFY(screen.selected().isEmpty() && !section->isVisible());
    }

    // Each button and Export menu entry writes the session's document: through a save panel
    // (cancelled once first) or into the hand-off's folder, opens it where the row says, and says
    // in the notice what it wrote where. Without the application the hand-off saves through the
    // panel instead.
    void exports_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("installed");
        QTest::addColumn<QString>("typed"); // empty: no save panel, the hand-off's own file
        QTest::addColumn<QString>("written");
        QTest::addColumn<QString>("launched");
        QTest::addColumn<QString>("notice");
        QTest::newRow("EDL, extension replaced") << u"EDL for DaVinci Resolve…"_s << true << u"markers.txt"_s << u"ROOT/markers.edl"_s << QString()
                                                 << u"Saved “markers.edl” in ROOT."_s;
        QTest::newRow("XML as chosen") << u"Premiere Pro XML…"_s << true << u"cut.xml"_s << u"ROOT/cut.xml"_s << QString() << u"Saved “cut.xml” in ROOT."_s;
        QTest::newRow("OTIO, then Resolve") << u"Open in DaVinci Resolve"_s << true << u"timeline"_s << u"ROOT/timeline.otio"_s
                                            << u"launch APPS/DaVinci Resolve Studio"_s << u"Saved “timeline.otio” in ROOT."_s;
        QTest::newRow("OTIO, no Resolve") << u"Open in DaVinci Resolve"_s << false << u"timeline"_s << u"ROOT/timeline.otio"_s << QString()
                                          << u"Saved “timeline.otio” in ROOT. DaVinci Resolve is not installed here: import the file there with"
                                             " Timelines > Import > AAF, EDL, XML, OTIO."_s;
        QTest::newRow("Premiere") << u"Open in Premiere Pro"_s << true << QString() << u"TEMP/vorlix-markers.xml"_s
                                  << u"open TEMP/vorlix-premiere.jsx with APPS/Premiere 2025"_s << u"Opened “vorlix-markers.xml” in TEMP in Premiere Pro."_s;
        QTest::newRow("no Premiere: saved") << u"Open in Premiere Pro"_s << false << u"cut.xml"_s << u"ROOT/cut.xml"_s << QString()
                                            << u"Saved “cut.xml” in ROOT. Premiere Pro is not installed here."_s;
        QTest::newRow("selects to Premiere") << u"Open selects in Premiere Pro"_s << true << QString() << u"TEMP/vorlix-selects.xml"_s
                                             << u"open TEMP/vorlix-selects.xml with APPS/Premiere 2025"_s
                                             << u"Opened “vorlix-selects.xml” in TEMP in Premiere Pro."_s;
        QTest::newRow("selects, no Premiere") << u"Open selects in Premiere Pro"_s << false << u"picks.xml"_s << u"ROOT/picks.xml"_s << QString()
                                              << u"Saved “picks.xml” in ROOT. Premiere Pro is not installed here."_s;
        QTest::newRow("Final Cut Pro") << u"Open in Final Cut Pro"_s << true << QString() << u"TEMP/vorlix-markers.fcpxml"_s
                                       << u"open TEMP/vorlix-markers.fcpxml with APPS/Final Cut Pro"_s << u"Opened “vorlix-markers.fcpxml” in TEMP in Final Cut Pro."_s;
        QTest::newRow("no Final Cut Pro: saved") << u"Open in Final Cut Pro"_s << false << u"cut"_s << u"ROOT/cut.fcpxml"_s << QString()
                                                 << u"Saved “cut.fcpxml” in ROOT. Final Cut Pro is not installed here."_s;
        QTest::newRow("FCPXML") << u"Final Cut Pro XML…"_s << true << u"cut.xml"_s << u"ROOT/cut.fcpxml"_s << QString() << u"Saved “cut.fcpxml” in ROOT."_s;
        QTest::newRow("Avid") << u"Avid Media Composer markers…"_s << true << u"avid"_s << u"ROOT/avid.txt"_s << QString() << u"Saved “avid.txt” in ROOT."_s;
        QTest::newRow("CSV") << u"CSV marker list…"_s << true << u"sheet.csv"_s << u"ROOT/sheet.csv"_s << QString() << u"Saved “sheet.csv” in ROOT."_s;
        QTest::newRow("SRT") << u"SubRip subtitles (.srt)…"_s << true << u"review"_s << u"ROOT/review.srt"_s << QString() << u"Saved “review.srt” in ROOT."_s;
        QTest::newRow("WebVTT") << u"WebVTT subtitles (.vtt)…"_s << true << u"review"_s << u"ROOT/review.vtt"_s << QString() << u"Saved “review.vtt” in ROOT."_s;
        QTest::newRow("SRT without a transcript") << u"SubRip subtitles (.srt)…"_s << true << u"review"_s << u"ROOT/review.srt"_s << QString()
                                                  << u"Saved “review.srt” in ROOT. No transcript is loaded, so the file holds no subtitles."_s;
    }

    void exports()
    {
        QFETCH(QString, button);
        QFETCH(bool, installed);
        QFETCH(QString, typed);
        QFETCH(QString, written);
        QFETCH(QString, launched);
        QFETCH(QString, notice);
        Screen screen;
        if (!installed)
            QVERIFY(QDir(screen.apps).removeRecursively());
        const auto contents = [](const QString &path) { QFile file(path); return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>"); };
        const auto placed = [&](QString path) { return path.replace(u"ROOT"_s, screen.root).replace(u"TEMP"_s, screen.temp).replace(u"APPS"_s, screen.apps); };
        screen.shell.desktop.saveAnswers = {QString(), screen.root + u'/' + typed};
        screen.shell.desktop.primaryAnswer = true; // "Open Resolve"
        screen.shell.state.setPreferredNLE(u"fcp"_s); // Final Cut Pro's hand-off shows only for those who prefer it
        // Subtitles are of the transcript on screen, unless the row expects none loaded.
        const bool showsTranscript = button.contains(u"subtitles"_s) && !notice.contains(u"No transcript"_s);
        QVERIFY(!showsTranscript || screen.showTranscript());
        QString expected = documentOf(button, showsTranscript ? interview() : QList<TranscriptSegment>());
        if (button.contains(u"selects"_s)) {
            QVERIFY2(screen.showTranscript(), "the transcript did not load");
            QVERIFY(chooseFromMenu(screen.view.get(), u"s2"_s, u"Grade B"_s));
            expected = generateSelectsXML(harbour(), {u"s2"_s}, {{u"s2"_s, u"B"_s}}, interview());
        }
        for (int click = typed.isEmpty() ? 1 : 0; click < 2; ++click)
            QVERIFY(press(screen.view.get(), button));
        QTRY_VERIFY2_WITH_TIMEOUT(contents(placed(written)) == expected.toUtf8(), qPrintable(u"wrong or no "_s + written), screenWait);
        QCOMPARE(screen.workspace->calls, launched.isEmpty() ? QStringList() : QStringList{placed(launched)});
        if (button == u"Open in DaVinci Resolve"_s && installed)
            QCOMPARE(screen.shell.desktop.asked.last(), u"notice: OTIO saved | "_s + resolveImportInstructions(u"timeline.otio"_s) + u" | Open Resolve | Done"_s);
        const QString missing = button.contains(u"Resolve"_s) ? u"timeline"_s : button.contains(u"Final Cut"_s) ? u"project"_s : u"sequence"_s;
        if (!installed)
            QVERIFY(screen.shell.desktop.asked.first().endsWith(u"is not installed here — save the "_s + missing + u" to import it later"_s));
        QTRY_VERIFY2_WITH_TIMEOUT(screen.view->notice()->isVisible(), "no notice after the export", screenWait);
        QCOMPARE(screen.view->notice()->shownReport().message, placed(notice));
        withText(screen.view->notice(), u"Show in folder"_s)->click();
        QCOMPARE(screen.shell.desktop.asked.last(), u"reveal: "_s + placed(written));
        screen.view->notice()->findChild<QToolButton *>(u"dismissNotice"_s)->click();
        QVERIFY(!screen.view->notice()->isVisible());
    }

    // The first hand-off follows the preferred editing application as it changes, the keyboard
    // walks the hand-offs in the order shown and then reaches the Export menu.
    void preferredEditorLeads_data()
    {
        QTest::addColumn<QString>("preferred");
        QTest::addColumn<QStringList>("handoffs");
        const QString resolve = u"Open in DaVinci Resolve"_s, premiere = u"Open in Premiere Pro"_s;
        QTest::newRow("Resolve") << u"resolve"_s << QStringList{resolve, premiere};
        QTest::newRow("Premiere Pro") << u"premiere"_s << QStringList{premiere, resolve};
        QTest::newRow("Final Cut Pro") << u"fcp"_s << QStringList{u"Open in Final Cut Pro"_s, resolve, premiere};
    }

    void preferredEditorLeads()
    {
        QFETCH(QString, preferred);
        QFETCH(QStringList, handoffs);
        Screen screen;
        screen.view->activateWindow();
        QVERIFY2(QTest::qWaitForWindowActive(screen.view.get(), screenWait), "the screen did not become active");
        for (const QString &nle : {u"fcp"_s, u"premiere"_s, preferred}) // changed live, from every other choice
            screen.shell.state.setPreferredNLE(nle);
        QLayout *column = screen.view->findChild<QWidget *>(u"handoffs"_s)->layout();
        QStringList shown;
        for (int i = 0; i < column->count(); ++i) {
            if (QWidget *button = column->itemAt(i)->widget(); button->isVisible())
                shown.append(static_cast<QPushButton *>(button)->text());
        }
        QCOMPARE(shown, handoffs);
        withText(screen.view.get(), handoffs.first())->setFocus();
        for (const QString &next : handoffs.mid(1) + QStringList{u"Export"_s}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->property("text").toString(), next);
        }
        QCOMPARE(menuEntries(static_cast<QToolButton *>(QApplication::focusWidget())->menu()),
                 (QStringList{u"Final Cut Pro XML…"_s, u"Premiere Pro XML…"_s, u"EDL for DaVinci Resolve…"_s, u"Avid Media Composer markers…"_s,
                              u"CSV marker list…"_s, u"--"_s, u"SubRip subtitles (.srt)…"_s, u"WebVTT subtitles (.vtt)…"_s}));
    }

    // The strip warns of the markers the clip misses, with the same line as the saved file's
    // notice; a click on a tick brings its row into view, from the transcript tab too. A newly
    // shown session starts at the top, and the column fits the narrowest window without a
    // sideways scroll or empty space below.
    void coverageAndNotice()
    {
        Screen screen;
        ShootSession filmed = harbour();
        MediaClip &clip = filmed.matchedClips.emplace_back();
        clip.id = clip.path = screen.root + u"/A001.mov"_s;
        clip.filename = u"A001.mov"_s;
        clip.timecode = u"10:00:00:00"_s;
        clip.duration = 6;
        screen.shell.state.setSessions({filmed, second});
        screen.shell.state.setSelectedSession(filmed);
        screen.view->resize(500, 400);
        CoverageStrip *strip = screen.view->coverage();
        QTRY_VERIFY2_WITH_TIMEOUT(strip->isVisible() && screen.view->findChild<QWidget *>(u"footageRow"_s), "no coverage strip", screenWait);
        QCOMPARE(strip->accessibleName(), u"Coverage: 2 of 4 markers are on matched footage"_s);
        QVERIFY(strip->tickRect(3).top() < strip->tickRect(0).top()); // off the footage: raised
        QHelpEvent hover(QEvent::ToolTip, strip->tickRect(3).center(), strip->mapToGlobal(strip->tickRect(3).center()));
        QApplication::sendEvent(strip, &hover);
        QCOMPARE(QToolTip::text(), u"Clip 10:00:12:00\nOn no matched footage"_s);

        QVERIFY2(screen.showTranscript(), "the transcript did not load");
        QScrollBar *scroll = screen.view->findChild<QScrollArea *>()->verticalScrollBar();
        scroll->setValue(0);
        QTest::mouseClick(strip, Qt::LeftButton, {}, strip->tickRect(3).center());
        QCOMPARE(screen.view->selectedTab(), u"markers"_s);
        const QPointer<MarkerRow> row = screen.view->findChildren<MarkerRow *>().at(3);
        QTRY_VERIFY2_WITH_TIMEOUT(row->isFlashing() && scroll->value() > 0, "the clicked marker's row was not brought into view", screenWait);
        QVERIFY(row->visibleRegion().boundingRect().height() == row->height());

        QVERIFY2(screen.select(second) && scroll->value() == 0, "the next session did not start at the top");
        QVERIFY2(screen.select(filmed), "the screen did not follow the selection back");
        QScrollArea *area = screen.view->findChild<QScrollArea *>();
        QTRY_VERIFY2_WITH_TIMEOUT(area->widget()->height() == std::max(area->viewport()->height(), area->widget()->heightForWidth(area->viewport()->width())),
                                  "the column is taller than its content", screenWait);
        QVERIFY(area->widget()->minimumSizeHint().width() <= area->viewport()->width());

        screen.shell.desktop.saveAnswers = {screen.root + u"/cut.xml"_s};
        QVERIFY(press(screen.view.get(), u"Premiere Pro XML…"_s));
        QTRY_VERIFY2_WITH_TIMEOUT(screen.view->notice()->isVisible(), "no notice after the save", toolWait);
        QCOMPARE(screen.view->notice()->shownReport().message,
                 u"Saved “cut.xml” in "_s + QDir::toNativeSeparators(screen.root) + u". 2 of 4 markers are on matched footage."_s);
        QVERIFY(!screen.view->notice()->hasFocus() && !screen.view->notice()->isAncestorOf(QApplication::focusWidget()));

        screen.shell.desktop.saveAnswers = {screen.root + u"/missing/cut.edl"_s}; // a folder that is not there
        QVERIFY(press(screen.view.get(), u"EDL for DaVinci Resolve…"_s));
        QVERIFY(screen.view->notice()->shownReport().failed);
        QVERIFY(screen.view->notice()->shownReport().message.startsWith(u"Could not save “cut.edl” in "_s));
        QVERIFY(!withText(screen.view->notice(), u"Show in folder"_s)->isVisible());
    }

    // The keyboard picks and grades like the mouse, and the grade shows as a letter on the chip.
    void keyboardInTheTranscript()
    {
        Screen screen;
        QVERIFY2(screen.showTranscript(), "the transcript did not load");
        auto *transcript = screen.view->findChild<TranscriptView *>();
        transcript->setFocus();
        QTRY_VERIFY2_WITH_TIMEOUT(transcript->hasFocus(), "the transcript did not take the focus", screenWait);
        const int plainWidth = runOf(transcript, u"s2"_s)->chipRect(u"s2"_s).width();
        const struct {
            Qt::Key key;
            QString current;
            QSet<QString> selected;
            QHash<QString, QString> grades;
        } steps[] = {
            {Qt::Key_Space, u"s1"_s, {u"s1"_s}, {}},
            {Qt::Key_Right, u"s2"_s, {u"s1"_s}, {}},
            {Qt::Key_B, u"s2"_s, {u"s1"_s, u"s2"_s}, {{u"s2"_s, u"B"_s}}},
            {Qt::Key_Backspace, u"s2"_s, {u"s1"_s, u"s2"_s}, {}},
            {Qt::Key_C, u"s2"_s, {u"s1"_s, u"s2"_s}, {{u"s2"_s, u"C"_s}}},
            {Qt::Key_Up, u"s1"_s, {u"s1"_s, u"s2"_s}, {{u"s2"_s, u"C"_s}}},
            {Qt::Key_Return, u"s1"_s, {u"s2"_s}, {{u"s2"_s, u"C"_s}}},
            {Qt::Key_End, u"s5"_s, {u"s2"_s}, {{u"s2"_s, u"C"_s}}},
            {Qt::Key_A, u"s5"_s, {u"s2"_s, u"s5"_s}, {{u"s2"_s, u"C"_s}, {u"s5"_s, u"A"_s}}},
        };
        for (const auto &step : steps) {
            QTest::keyClick(transcript, step.key);
            QCOMPARE(transcript->currentSegmentId(), step.current);
            QCOMPARE(screen.selected(), step.selected);
            QCOMPARE(screen.view->selects()->segmentGrades(), step.grades);
        }
        QVERIFY(runOf(transcript, u"s2"_s)->chipRect(u"s2"_s).width() > plainWidth + 8); // padding and the grade letter
    }

    // The real panel: with folders allowed, confirming a selected folder returns the folder
    // instead of opening it; the selected file comes back either way.
    void filesPanel_data()
    {
        QTest::addColumn<bool>("allowsFolders");
        QTest::addColumn<QString>("selected");
        QTest::newRow("a folder") << true << u"Card A"_s;
        QTest::newRow("a file, folders allowed") << true << u"Card A/A001.mov"_s;
        QTest::newRow("a file, files only") << false << u"Card A/A001.mov"_s;
    }

    void filesPanel()
    {
        QFETCH(bool, allowsFolders);
        QFETCH(QString, selected);
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkpath(u"Card A"_s) && QFile(root.filePath(u"Card A/A001.mov"_s)).open(QIODevice::WriteOnly));
        QWidget window;
        Preferences preferences(root.filePath(u"settings.ini"_s));
        WidgetDesktop desktop(DialogFolders(preferences, {}), &window);
        QList<QUrl> chosen;
        desktop.chooseFiles({u"Select footage"_s, allowsFolders}, [&chosen](const QList<QUrl> &urls) { chosen = urls; });
        const QPointer<QFileDialog> dialog = window.findChild<QFileDialog *>();
        QVERIFY2(dialog, "no file dialog opened");
        const QFileInfo target(root.filePath(selected));
        dialog->setDirectory(target.absolutePath());
        dialog->selectFile(target.fileName());
        QMetaObject::invokeMethod(dialog, "accept"); // the Open button
        QCOMPARE(chosen, QList<QUrl>{QUrl::fromLocalFile(target.absoluteFilePath())});
    }

    // A save panel opens where the last export went, else in the first fall-back that exists,
    // never in the working directory; footage panels keep a folder of their own.
    void dialogStartFolders()
    {
        QTemporaryDir root;
        const QString documents = root.filePath(u"Documents"_s), exports = root.filePath(u"Exports"_s);
        QVERIFY(QDir().mkpath(documents) && QDir().mkpath(exports));
        Preferences preferences(root.filePath(u"settings.ini"_s));
        const DialogFolders folders(preferences, {root.filePath(u"Movies"_s), documents});
        QWidget window;
        WidgetDesktop desktop(folders, &window);
        QString saved;
        const auto openedIn = [&](bool save) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            if (save)
                desktop.chooseSaveFile({u"cut.xml"_s, QString(), QString()}, [&saved](const QString &path) { saved = path; });
            else
                desktop.chooseFolder(u"Footage"_s, [](const QString &) {});
            const QPointer<QFileDialog> dialog = window.findChild<QFileDialog *>();
            const QString folder = dialog ? dialog->directory().absolutePath() : u"(no dialog)"_s;
            if (dialog && save) {
                dialog->selectFile(exports + u"/cut.xml"_s);
                QMetaObject::invokeMethod(dialog, "accept");
            } else if (dialog) {
                dialog->reject();
            }
            return folder;
        };
        QCOMPARE(openedIn(true), documents);
        QCOMPARE(saved, exports + u"/cut.xml"_s);
        QCOMPARE(openedIn(true), exports);
        QCOMPARE(openedIn(false), documents);
        QVERIFY(QDir(exports).removeRecursively());
        QCOMPARE(folders.startFolder(DialogFolders::Purpose::Export), documents);
    }
};

QTEST_MAIN(SessionDetailTest)
#include "SessionDetailTest.moc"
