// The session screen offscreen: real state on a temporary preferences file, the dialogs played
// by ScriptedDesktop, the export files really written and read back. Only the editing
// applications are fakes (paths in a temporary folder and a workspace that records launches),
// since the machine has none.
#include "ShellFixture.h"
#include "export/RecordingWorkspace.h"
#include "transcript/TranscriptDriver.h"

#include "analysis/AnalysisPipeline.h"
#include "analysis/PendingAnalyses.h"
#include "export/EditorHandoff.h"
#include "export/OtioTimeline.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "platform/NotificationCenter.h"
#include "ui/MarkerRow.h"
#include "ui/SessionDetailView.h"
#include "ui/WidgetDesktop.h"
#include "ui/transcript/SelectsModel.h"

#include <QCoro/QCoroSignal>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTabBar>
#include <QToolButton>

using namespace Qt::StringLiterals;
using namespace TranscriptDriver;

namespace {

// Holds a fake analysis run open until the test lets it finish.
class RunGate : public QObject
{
    Q_OBJECT
Q_SIGNALS:
    void opened();
};

ShootMarker marker(const QString &id, const QString &type, const QString &timecode)
{
    ShootMarker m;
    m.id = id;
    m.markerType = type;
    m.timecode = timecode;
    return m;
}

ShootSession harbour()
{
    ShootSession session = makeSession(u"harbour"_s, u"Harbour day"_s, QDateTime(QDate(2026, 11, 20), QTime(8, 0), Qt::UTC));
    session.markers = {marker(u"m1"_s, u"log"_s, u"10:00:01:00"_s), marker(u"m2"_s, u"earmark"_s, u"10:00:05:00"_s),
                       marker(u"m3"_s, u"earmark"_s, u"10:00:09:00"_s), marker(u"m4"_s, u"inout"_s, u"10:00:12:00"_s)};
    session.markers[0].summary = u"Boats come in"_s;
    session.markers[1].raw = u"we sailed at dawn"_s;
    session.markers[1].quote = u"At dawn"_s;
    session.markers[2].raw = u"[no speech]"_s;
    session.markers[3].timecodeOut = u"10:00:20:00"_s;
    return session;
}

const ShootSession second = makeSession(u"second"_s, u"Second"_s, QDateTime(QDate(2026, 11, 21), QTime(8, 0), Qt::UTC));

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

} // namespace

class SessionDetailTest : public QObject
{
    Q_OBJECT

    // The screen on the harbour session, with the transcript service answering interview() and
    // each analysis run held open by `gate`.
    struct Screen {
        explicit Screen(const QStringList &installed = {})
            : pending(center), root(shell.dir.filePath(u"root"_s)), temp(root + u"/it's tmp"_s), apps(root + u"/Applications"_s)
        {
            QDir().mkpath(temp);
            for (const QString &app : installed)
                QDir().mkpath(apps + u'/' + app);
            shell.state.setSessions({harbour(), second});
            shell.state.setSelectedSession(harbour());
            SessionDetailEnvironment environment{
                [](const QString &) -> QCoro::Task<QList<TranscriptSegment>> { co_return interview(); },
                [this](ShootSession session, QList<QUrl> files, AnalysisState &analysis) -> QCoro::Task<> {
                    analysed.append(session.id + u' ' + files.first().fileName());
                    analysis.setAnalysing(true);
                    analysis.setAnalyseProgress(u"Extracting audio (1/1): "_s + files.first().fileName());
                    co_await qCoro(&gate, &RunGate::opened);
                    analysis.appendAnalyseResult(files.first().fileName() + u": 2 audio + 4 visual markers (300 words)"_s);
                    analysis.setAnalysing(false);
                    analysis.setAnalyseProgress(QString());
                },
                workspace,
                temp,
                EditorLocations{{apps + u"/Premiere 2026"_s, apps + u"/Premiere 2025"_s}, {apps + u"/DaVinci Resolve"_s, apps + u"/DaVinci Resolve Studio"_s}},
                u"shoot.example.org"_s};
            view = std::make_unique<SessionDetailView>(shell.state, shell.desktop, environment, pending);
            view->resize(640, 900);
            view->show();
        }

        QString text(const QString &label) const { return view->findChild<QLabel *>(label)->text(); }
        QPushButton *analyseButton() const { return view->findChild<QPushButton *>(u"analyseButton"_s); }

        [[nodiscard]] bool select(const ShootSession &session)
        {
            shell.state.setSelectedSession(session);
            return QTest::qWaitFor([&] { return view->session().id == session.id; }, screenWait);
        }

        [[nodiscard]] bool showTranscript()
        {
            auto *tabs = view->findChild<QTabBar *>();
            QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
            return QTest::qWaitFor([&] { return runOf(view.get(), u"s1"_s); }, screenWait);
        }

        ShellFixture shell;
        NotificationCenter center;
        PendingAnalyses pending;
        std::shared_ptr<RecordingWorkspace> workspace = std::make_shared<RecordingWorkspace>();
        QStringList analysed; // "SESSION FILE" per run
        RunGate gate;
        QString root;
        QString temp;
        QString apps;
        std::unique_ptr<SessionDetailView> view;
    };

private Q_SLOTS:
    void renaming_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("withButton");
        QTest::addColumn<bool>("sessionGone");
        QTest::addColumn<QString>("title");
        QTest::newRow("Return, trimmed") << u"  Day 2  "_s << false << false << u"Day 2"_s;
        QTest::newRow("checkmark, tabs trimmed") << u"\tDay 3\t"_s << true << false << u"Day 3"_s;
        QTest::newRow("blank cancels") << u"   "_s << false << false << u"Harbour day"_s;
        QTest::newRow("session no longer listed") << u"Day 2"_s << false << true << u"Harbour day"_s;
    }

    void renaming()
    {
        QFETCH(QString, typed);
        QFETCH(bool, withButton);
        QFETCH(bool, sessionGone);
        QFETCH(QString, title);
        Screen screen;
        QLabel *shown = screen.view->findChild<QLabel *>(u"detailTitle"_s);
        QTRY_VERIFY2_WITH_TIMEOUT(shown->text() == u"Harbour day"_s, "the title is not shown", screenWait);
        QTest::mouseDClick(shown, Qt::LeftButton);
        auto *field = screen.view->findChild<QLineEdit *>(u"detailTitleField"_s);
        QVERIFY(screen.view->isRenaming() && field->isVisible() && !shown->isVisible());
        QCOMPARE((QStringList{field->text(), field->placeholderText()}), (QStringList{u"Harbour day"_s, u"Session name"_s}));
        field->setText(typed);
        if (sessionGone)
            screen.shell.state.setSessions({second});
        if (withButton)
            screen.view->findChild<QToolButton *>(u"renameButton"_s)->click();
        else
            QTest::keyClick(field, Qt::Key_Return);

        QVERIFY(!screen.view->isRenaming());
        QCOMPARE(screen.shell.state.sessions().size(), sessionGone ? 1 : 2);
        QCOMPARE(screen.shell.state.sessions().constFirst().title, sessionGone ? u"Second"_s : title);
        QCOMPARE(screen.shell.state.selectedSession()->title, title);
        QTRY_VERIFY2_WITH_TIMEOUT(shown->text() == title && shown->isVisible() && !field->isVisible(),
                                  "the title row did not come back with the new title", screenWait);
    }

    void deletingAsksFirst()
    {
        Screen screen;
        screen.view->findChild<QToolButton *>(u"deleteButton"_s)->click();
        QCOMPARE(screen.shell.desktop.asked, QStringList{u"confirm: Delete this session? | This will remove the session from Vorlix Edit. "
                                                         "Your markers on shoot.example.org are not affected. | Delete"_s});
        QCOMPARE(screen.shell.state.sessions().size(), 1);
        QVERIFY(!screen.shell.state.selectedSession());
        QCOMPARE(screen.shell.state.deletedSessionIds(), QSet<QString>{u"harbour"_s});
    }

    void summaryFootageAndMarkerRows()
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
    }

    // Tab, selects and analysis belong to a session; the analysis goes on while another is shown.
    void eachSessionKeepsItsTabSelectsAndAnalysis()
    {
        Screen screen;
        QVERIFY2(screen.showTranscript(), "the transcript did not load");
        const QPointer<QWidget> section = screen.view->findChild<QWidget *>(u"selectsSection"_s);
        QVERIFY(!section->isVisible());
        QVERIFY(click(screen.view.get(), u"s1"_s));
        QCOMPARE(screen.text(u"selectsCount"_s), u"1 select ready to export"_s);
        QVERIFY(click(screen.view.get(), u"s2"_s));
        QCOMPARE(screen.text(u"selectsCount"_s), u"2 selects ready to export"_s);
        QVERIFY(section->isVisible());
        const QPointer<QPushButton> analyse = screen.analyseButton();
        screen.view->runAnalysis({QUrl::fromLocalFile(u"/footage/A001.mov"_s)});
        QVERIFY(!analyse->isEnabled());
        QCOMPARE(analyse->text(), u"Extracting audio (1/1): A001.mov"_s);

        QVERIFY2(screen.select(second), "the screen did not follow the selection");
        QCOMPARE(screen.view->selectedTab(), u"markers"_s);
        QVERIFY(screen.view->selects()->selectedSegmentIds().isEmpty());
        QVERIFY(analyse->isEnabled());
        QCOMPARE(analyse->text(), u"Analyse Footage with AI"_s);

        QVERIFY2(screen.select(harbour()), "the screen did not follow the selection back");
        QCOMPARE(screen.view->selectedTab(), u"transcript"_s);
        QCOMPARE(screen.view->selects()->selectedSegmentIds(), (QSet<QString>{u"s1"_s, u"s2"_s}));
        QVERIFY(!analyse->isEnabled());
        Q_EMIT screen.gate.opened();
        QTRY_VERIFY2_WITH_TIMEOUT(analyse && analyse->isEnabled(), "the finished run did not enable the button again", screenWait);
        QCOMPARE(analyse->text(), u"Analyse Footage with AI"_s);
        QCOMPARE(screen.text(u"analysisResult"_s), u"A001.mov: 2 audio + 4 visual markers (300 words)"_s);

        withText<QToolButton>(screen.view.get(), u"Clear all"_s)->click();
        QVERIFY(screen.view->selects()->selectedSegmentIds().isEmpty() && !section->isVisible());
    }

    // A save panel's first answer cancels and writes nothing; the second writes the document.
    void exports_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("typed"); // empty: no save panel, the hand-off's own file
        QTest::addColumn<QString>("written");
        QTest::addColumn<QStringList>("asked");
        QTest::addColumn<QString>("launched");
        QTest::newRow("EDL, extension replaced") << u"Save EDL"_s << u"markers.txt"_s << u"ROOT/markers.edl"_s
                                                 << QStringList(2, u"save: vorlix-markers.edl"_s) << QString();
        QTest::newRow("XML as chosen") << u"Save XML"_s << u"cut.xml"_s << u"ROOT/cut.xml"_s << QStringList(2, u"save: vorlix-markers.xml"_s) << QString();
        QTest::newRow("OTIO, then Resolve") << u"Open in DaVinci Resolve"_s << u"timeline"_s << u"ROOT/timeline.otio"_s
                                            << (QStringList(2, u"save: vorlix-session.otio"_s)
                                                << u"notice: OTIO saved | "_s + resolveImportInstructions(u"timeline.otio"_s) + u" | Open Resolve | Done"_s)
                                            << u"launch APPS/DaVinci Resolve Studio"_s;
        QTest::newRow("Premiere") << u"Open in Premiere Pro"_s << QString() << u"TEMP/vorlix-markers.xml"_s << QStringList()
                                  << u"open TEMP/vorlix-premiere.jsx with APPS/Premiere 2025"_s;
        QTest::newRow("selects to Premiere") << u"Open selects in Premiere Pro"_s << QString() << u"TEMP/vorlix-selects.xml"_s << QStringList()
                                             << u"open TEMP/vorlix-selects.xml with APPS/Premiere 2025"_s;
    }

    void exports()
    {
        QFETCH(QString, button);
        QFETCH(QString, typed);
        QFETCH(QString, written);
        QFETCH(QStringList, asked);
        QFETCH(QString, launched);
        Screen screen({u"Premiere 2025"_s, u"DaVinci Resolve Studio"_s});
        const auto placed = [&](QString path) { return path.replace(u"ROOT"_s, screen.root).replace(u"TEMP"_s, screen.temp).replace(u"APPS"_s, screen.apps); };
        screen.shell.desktop.saveAnswers = {QString(), screen.root + u'/' + typed};
        screen.shell.desktop.primaryAnswer = true; // "Open Resolve"
        QString expected = button.contains(u"Resolve"_s) ? generateOTIO(harbour())
                           : button == u"Save EDL"_s     ? generateResolveEDL(harbour())
                                                         : generatePremiereXML(harbour());
        if (button.contains(u"selects"_s)) {
            QVERIFY2(screen.showTranscript(), "the transcript did not load");
            QVERIFY(chooseFromMenu(screen.view.get(), u"s2"_s, u"Grade B"_s));
            expected = generateSelectsXML(harbour(), {u"s2"_s}, {{u"s2"_s, u"B"_s}});
        }
        if (!typed.isEmpty()) {
            withText(screen.view.get(), button)->click();
            QTRY_VERIFY2_WITH_TIMEOUT(!screen.shell.desktop.asked.isEmpty(), "no save panel was asked for", screenWait);
            QCOMPARE(QDir(screen.root).entryList(QDir::Files), QStringList());
        }
        withText(screen.view.get(), button)->click();
        QTRY_VERIFY2_WITH_TIMEOUT(contents(placed(written)) == expected.toUtf8(), qPrintable(u"wrong or no "_s + written), screenWait);
        QCOMPARE(screen.shell.desktop.asked, asked);
        QCOMPARE(screen.workspace->calls, launched.isEmpty() ? QStringList() : QStringList{placed(launched)});
    }

    void analysisRequests()
    {
        Screen screen;
        const QUrl file = QUrl::fromLocalFile(u"/footage/A001.mov"_s);
        QVERIFY2(screen.select(harbour()), "the screen does not show its session");
        const auto request = [&](const QString &sessionId) {
            screen.center.post(Notifications::analyseFiles, {{u"files"_s, QVariantList{file}}, {u"sessionId"_s, sessionId}});
        };
        request(u"second"_s);
        QVERIFY(screen.analysed.isEmpty());
        QVERIFY(screen.pending.hasPending(u"second"_s)); // left for that session's screen
        request(u"harbour"_s);
        QCOMPARE(screen.analysed, QStringList{u"harbour A001.mov"_s});

        // The other session's request runs once its screen shows it.
        QVERIFY2(screen.select(second), "the screen did not follow the selection");
        QTRY_VERIFY2_WITH_TIMEOUT(screen.analysed.size() == 2, "the waiting request did not run", screenWait);
        QCOMPARE(screen.analysed.last(), u"second A001.mov"_s);
        QVERIFY(!screen.pending.hasPending(u"second"_s));

        // The screen's own button asks for files only.
        Q_EMIT screen.gate.opened();
        QTRY_VERIFY2_WITH_TIMEOUT(screen.analyseButton()->isEnabled(), "the run did not end", screenWait);
        screen.shell.desktop.fileAnswers = {{file}};
        screen.analyseButton()->click();
        QCOMPARE(screen.shell.desktop.asked, QStringList{u"files: Select footage files to analyse"_s});
        QCOMPARE(screen.analysed.last(), u"second A001.mov"_s);
        QCOMPARE(screen.analysed.size(), 3);
        Q_EMIT screen.gate.opened();
    }

    // The real panel: with folders allowed, confirming a selected folder returns the folder
    // instead of opening it; files only, the selected file comes back.
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
        QVERIFY(QDir(root.path()).mkpath(u"Card A"_s));
        QFile clip(root.filePath(u"Card A/A001.mov"_s));
        QVERIFY(clip.open(QIODevice::WriteOnly));
        clip.close();
        QWidget window;
        WidgetDesktop desktop(&window);
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
};

QTEST_MAIN(SessionDetailTest)
#include "SessionDetailTest.moc"
