// The session screen offscreen: real state on a temporary preferences file, the dialogs played
// by ScriptedDesktop, the export files really written and read back. Only the editing
// applications are fakes (paths in a temporary folder and a workspace that records launches),
// since the machine has none.
#include "ShellFixture.h"
#include "export/RecordingWorkspace.h"
#include "transcript/TranscriptDriver.h"

#include "analysis/AnalysisPipeline.h"
#include "analysis/PendingAnalyses.h"
#include "export/OtioTimeline.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "platform/NotificationCenter.h"
#include "ui/MarkerRow.h"
#include "ui/SessionDetailView.h"
#include "ui/WidgetDesktop.h"
#include "ui/transcript/SelectsModel.h"
#include "ui/transcript/TranscriptView.h"

#include <QCoro/QCoroSignal>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

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
    m.createdAt = QDateTime(QDate(2026, 11, 20), QTime(9, 0), Qt::UTC);
    return m;
}

ShootSession harbour()
{
    ShootSession session = makeSession(u"harbour"_s, u"Harbour day"_s, QDateTime(QDate(2026, 11, 20), QTime(8, 0), Qt::UTC));
    session.fps = 25;
    ShootMarker log = marker(u"m1"_s, u"log"_s, u"10:00:01:00"_s);
    log.summary = u"Boats come in"_s;
    ShootMarker earmark = marker(u"m2"_s, u"earmark"_s, u"10:00:05:00"_s);
    earmark.raw = u"we sailed at dawn"_s;
    earmark.quote = u"At dawn"_s;
    ShootMarker quiet = marker(u"m3"_s, u"earmark"_s, u"10:00:09:00"_s);
    quiet.raw = u"[no speech]"_s;
    ShootMarker inout = marker(u"m4"_s, u"inout"_s, u"10:00:12:00"_s);
    inout.timecodeOut = u"10:00:20:00"_s;
    session.markers = {log, earmark, quiet, inout};
    return session;
}

ShootSession second()
{
    return makeSession(u"second"_s, u"Second"_s, QDateTime(QDate(2026, 11, 21), QTime(8, 0), Qt::UTC));
}

QList<TranscriptSegment> interview()
{
    return TranscriptDriver::transcript({{"s1", "SPEAKER A", "Where did it start?"}, {"s2", "SPEAKER B", "In the workshop."},
                                         {"s3", "SPEAKER B", "I was nine."}, {"s4", "SPEAKER A", "And the first boat?"}});
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

} // namespace

class SessionDetailTest : public QObject
{
    Q_OBJECT

    struct Screen {
        explicit Screen(const QStringList &installed = {})
            : pending(center), root(shell.dir.filePath(u"root"_s)), temp(root + u"/it's tmp"_s), apps(root + u"/Applications"_s)
        {
            QDir().mkpath(temp);
            for (const QString &app : installed)
                QDir().mkpath(apps + u'/' + app);
            shell.state.setSessions({harbour(), second()});
            shell.state.setSelectedSession(harbour());
            SessionDetailEnvironment environment{
                [](const QString &) -> QCoro::Task<QList<TranscriptSegment>> { co_return interview(); },
                [this](ShootSession session, QList<QUrl> files, AnalysisState &analysis) -> QCoro::Task<> {
                    analysed.append({session.id, files});
                    if (!holdRuns)
                        co_return;
                    analysis.setAnalysing(true);
                    analysis.setAnalyseProgress(u"Extracting audio (1/1): "_s + files.first().fileName());
                    co_await qCoro(&gate, &RunGate::opened);
                    analysis.appendAnalyseResult(files.first().fileName() + u": 2 audio + 4 visual markers (300 words)"_s);
                    analysis.setAnalysing(false);
                    analysis.setAnalyseProgress(QString());
                },
                workspace,
                temp,
                EditorLocations{{apps + u"/Premiere 2026"_s, apps + u"/Premiere 2025"_s, apps + u"/Premiere CC"_s},
                                {apps + u"/DaVinci Resolve"_s, apps + u"/DaVinci Resolve Studio"_s}},
                u"shoot.example.org"_s};
            view = std::make_unique<SessionDetailView>(shell.state, shell.desktop, environment, pending);
            view->resize(640, 900);
            view->show();
        }

        const ShootSession &stored(const QString &id) const
        {
            for (const ShootSession &s : shell.state.sessions()) {
                if (s.id == id)
                    return s;
            }
            static const ShootSession none;
            return none;
        }

        QLabel *label(const QString &name) const { return view->findChild<QLabel *>(name); }
        void click(const QString &text) const { withText(view.get(), text)->click(); }

        void showTranscript()
        {
            QTest::mouseClick(view->findChild<QTabBar *>(), Qt::LeftButton, {},
                              view->findChild<QTabBar *>()->tabRect(1).center());
            QTRY_VERIFY(!view->findChild<TranscriptView *>()->isLoadingTranscript());
        }

        ShellFixture shell;
        NotificationCenter center;
        PendingAnalyses pending;
        std::shared_ptr<RecordingWorkspace> workspace = std::make_shared<RecordingWorkspace>();
        QList<PendingAnalyses::Request> analysed;
        bool holdRuns = false;
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
        QTest::addColumn<QString>("title");
        QTest::newRow("Return, trimmed") << u"  Day 2  "_s << false << u"Day 2"_s;
        QTest::newRow("checkmark, tabs trimmed") << u"\tDay 3\t"_s << true << u"Day 3"_s;
        QTest::newRow("blank cancels") << u"   "_s << false << u"Harbour day"_s;
    }

    void renaming()
    {
        QFETCH(QString, typed);
        QFETCH(bool, withButton);
        QFETCH(QString, title);
        Screen screen;
        QLabel *shown = screen.label(u"detailTitle"_s);
        QTRY_COMPARE(shown->text(), u"Harbour day"_s);
        QTest::mouseDClick(shown, Qt::LeftButton);
        QVERIFY(screen.view->isRenaming());
        auto *field = screen.view->findChild<QLineEdit *>(u"detailTitleField"_s);
        QVERIFY(field->isVisible() && !shown->isVisible());
        QCOMPARE(field->text(), u"Harbour day"_s);
        QCOMPARE(field->placeholderText(), u"Session name"_s);
        field->clear();
        QTest::keyClicks(field, typed);
        if (withButton)
            screen.view->findChild<QToolButton *>(u"renameButton"_s)->click();
        else
            QTest::keyClick(field, Qt::Key_Return);

        QVERIFY(!screen.view->isRenaming());
        QCOMPARE(screen.stored(u"harbour"_s).title, title);
        QCOMPARE(screen.shell.state.selectedSession()->title, title);
        QTRY_COMPARE(shown->text(), title);
        QVERIFY(shown->isVisible() && !field->isVisible());
    }

    void renamingASessionNoLongerListedChangesNothing()
    {
        Screen screen;
        screen.view->startRenaming();
        screen.view->setNewTitle(u"Day 2"_s);
        screen.shell.state.setSessions({second()});
        screen.view->renameSession();
        QVERIFY(!screen.view->isRenaming());
        QCOMPARE(screen.shell.state.sessions().size(), 1);
        QCOMPARE(screen.shell.state.selectedSession()->title, u"Harbour day"_s);
    }

    void deleting_data()
    {
        QTest::addColumn<bool>("confirmed");
        QTest::newRow("Delete") << true;
        QTest::newRow("Cancel") << false;
    }

    void deleting()
    {
        QFETCH(bool, confirmed);
        Screen screen;
        screen.shell.desktop.confirmAnswer = confirmed;
        screen.view->findChild<QToolButton *>(u"deleteButton"_s)->click();

        QCOMPARE(screen.shell.desktop.asked.size(), 1);
        const Confirmation &alert = screen.shell.desktop.asked.first();
        QCOMPARE(alert.title, u"Delete this session?"_s);
        QCOMPARE(alert.message, u"This will remove the session from Vorlix Edit. Your markers on shoot.example.org are not affected."_s);
        QCOMPARE(alert.confirmLabel, u"Delete"_s);
        QCOMPARE(screen.shell.state.sessions().size(), confirmed ? 1 : 2);
        QCOMPARE(screen.stored(u"harbour"_s).id.isEmpty(), confirmed);
        QCOMPARE(screen.shell.state.selectedSession().has_value(), !confirmed);
        QCOMPARE(screen.shell.state.deletedSessions().size(), confirmed ? 1 : 0);
    }

    void summaryFootageAndMarkerRows()
    {
        Screen screen;
        QTRY_COMPARE(screen.label(u"markerCount"_s)->text(), u"4 markers"_s);
        QCOMPARE(screen.label(u"clipCount"_s)->text(), u"0 clips"_s);
        QCOMPARE(screen.label(u"tcRange"_s)->text(), u"10:00:01:00 - 10:00:12:00"_s);
        QCOMPARE(screen.view->findChild<QTabBar *>()->tabText(0), u"Markers (4)"_s);
        QVERIFY(!screen.label(u"matchedFootageHeading"_s));

        // Only the earmark with heard words shows them; a quote sits between double quotes.
        QTRY_COMPARE(screen.view->findChildren<MarkerRow *>().size(), 4);
        const QList<MarkerRow *> rows = screen.view->findChildren<MarkerRow *>();
        QCOMPARE(rows.at(0)->shownTexts(), (QStringList{u"Log"_s, u"10:00:01:00"_s, u"Boats come in"_s}));
        QCOMPARE(rows.at(1)->shownTexts(), (QStringList{u"Earmark"_s, u"10:00:05:00"_s, u"\"At dawn\""_s, u"we sailed at dawn"_s}));
        QCOMPARE(rows.at(2)->shownTexts(), (QStringList{u"Earmark"_s, u"10:00:09:00"_s}));
        QCOMPARE(rows.at(3)->shownTexts(), (QStringList{u"Clip"_s, u"10:00:12:00"_s, u"→"_s, u"10:00:20:00"_s}));
        // A row is as tall as its wrapped texts need.
        QVERIFY(rows.at(1)->heightForWidth(200) > rows.at(1)->heightForWidth(600));
        QCOMPARE(rows.at(1)->height(), rows.at(1)->heightForWidth(rows.at(1)->width()));

        ShootSession withClips = harbour();
        MediaClip clip;
        clip.id = clip.filename = u"A001.mov"_s;
        clip.duration = 12.6;
        withClips.matchedClips = {clip};
        screen.shell.state.setSelectedSession(withClips);
        QTRY_VERIFY(screen.label(u"matchedFootageHeading"_s));
        QCOMPARE(screen.label(u"matchedFootageHeading"_s)->text(), u"MATCHED FOOTAGE"_s);
        QCOMPARE(screen.label(u"footageTimecode"_s)->text(), u"No TC"_s);
        QVERIFY(withText<QLabel>(screen.view.get(), u"13s"_s));
        QCOMPARE(screen.label(u"clipCount"_s)->text(), u"1 clips"_s);
    }

    void selectsFollowTheTranscript()
    {
        using namespace TranscriptDriver;
        Screen screen;
        QWidget *section = screen.view->findChild<QWidget *>(u"selectsSection"_s);
        QLabel *count = screen.label(u"selectsCount"_s);
        screen.showTranscript();
        QVERIFY(!section->isVisible());

        click(screen.view.get(), u"s1"_s);
        QVERIFY(section->isVisible());
        QCOMPARE(count->text(), u"1 select ready to export"_s);
        click(screen.view.get(), u"s2"_s);
        QCOMPARE(count->text(), u"2 selects ready to export"_s);

        // Shift-click from s2 to s4 spans two speaker runs and offers the range.
        click(screen.view.get(), u"s4"_s, Qt::ShiftModifier);
        QPushButton *offer = offerButton(screen.view.get());
        QVERIFY(offer && offer->isVisible());
        offer->click();
        QCOMPARE(screen.view->selects()->selectedSegmentIds(), (QSet<QString>{u"s1"_s, u"s2"_s, u"s3"_s, u"s4"_s}));
        QCOMPARE(count->text(), u"4 selects ready to export"_s);

        chooseFromMenu(screen.view.get(), u"s3"_s, u"Grade A"_s);
        QCOMPARE(screen.view->selects()->segmentGrades().value(u"s3"_s), u"A"_s);
        chooseFromMenu(screen.view.get(), u"s3"_s, u"Grade A"_s);
        QVERIFY(!screen.view->selects()->segmentGrades().contains(u"s3"_s));
        chooseFromMenu(screen.view.get(), u"s2"_s, u"Grade B"_s);
        click(screen.view.get(), u"s2"_s);
        QVERIFY(!screen.view->selects()->segmentGrades().contains(u"s2"_s));
        QCOMPARE(count->text(), u"3 selects ready to export"_s);

        toolButton(screen.view.get(), u"Clear all"_s)->click();
        QVERIFY(screen.view->selects()->selectedSegmentIds().isEmpty());
        QVERIFY(!section->isVisible());
    }

    void eachSessionKeepsItsTabAndSelects()
    {
        Screen screen;
        screen.showTranscript();
        TranscriptDriver::click(screen.view.get(), u"s1"_s);
        screen.shell.state.setSelectedSession(second());
        QTRY_COMPARE(screen.view->session().id, u"second"_s);
        QCOMPARE(screen.view->selectedTab(), u"markers"_s);
        QVERIFY(screen.view->selects()->selectedSegmentIds().isEmpty());
        screen.shell.state.setSelectedSession(harbour());
        QTRY_COMPARE(screen.view->session().id, u"harbour"_s);
        QCOMPARE(screen.view->selectedTab(), u"transcript"_s);
        QCOMPARE(screen.view->selects()->selectedSegmentIds(), QSet<QString>{u"s1"_s});
    }

    void savePanelsWriteTheDocuments_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("proposed");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("written");
        QTest::newRow("EDL, extension replaced") << u"Save EDL"_s << u"vorlix-markers.edl"_s << u"markers.txt"_s << u"markers.edl"_s;
        QTest::newRow("XML as chosen") << u"Save XML"_s << u"vorlix-markers.xml"_s << u"cut.xml"_s << u"cut.xml"_s;
        QTest::newRow("OTIO, extension appended") << u"Open in DaVinci Resolve"_s << u"vorlix-session.otio"_s << u"timeline"_s << u"timeline.otio"_s;
    }

    void savePanelsWriteTheDocuments()
    {
        QFETCH(QString, button);
        QFETCH(QString, proposed);
        QFETCH(QString, typed);
        QFETCH(QString, written);
        Screen screen;
        screen.shell.desktop.saveAnswers = {std::nullopt, screen.root + u'/' + typed};
        const ShootSession session = harbour();
        const QString expected = button == u"Save EDL"_s ? generateResolveEDL(session)
                                 : button == u"Save XML"_s ? generatePremiereXML(session)
                                                           : generateOTIO(session);
        screen.click(button); // cancelled
        QTRY_COMPARE(screen.shell.desktop.saveRequests.size(), 1);
        QCOMPARE(screen.shell.desktop.saveRequests.first().defaultName, proposed);
        QCOMPARE(QDir(screen.root).entryList(QDir::Files), QStringList());
        screen.click(button);
        QTRY_COMPARE(contents(screen.root + u'/' + written), expected.toUtf8());
    }

    void resolveAlertAndLaunch_data()
    {
        QTest::addColumn<bool>("openResolve");
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("calls");
        QTest::newRow("Open Resolve, Studio only") << true << QStringList{u"DaVinci Resolve Studio"_s} << QStringList{u"launch %1/DaVinci Resolve Studio"_s};
        QTest::newRow("Done") << false << QStringList{u"DaVinci Resolve"_s} << QStringList();
    }

    void resolveAlertAndLaunch()
    {
        QFETCH(bool, openResolve);
        QFETCH(QStringList, installed);
        QFETCH(QStringList, calls);
        Screen screen(installed);
        screen.shell.desktop.primaryAnswer = openResolve;
        screen.shell.desktop.saveAnswers = {screen.root + u"/cut.OTIO"_s};
        screen.click(u"Open in DaVinci Resolve"_s);
        QCOMPARE(screen.shell.desktop.notices.size(), 1);
        const Notice &notice = screen.shell.desktop.notices.first();
        QCOMPARE(notice.title, u"OTIO saved"_s);
        QCOMPARE(notice.message, resolveImportInstructions(u"cut.otio"_s));
        QCOMPARE(notice.primaryLabel, u"Open Resolve"_s);
        QCOMPARE(notice.secondaryLabel, u"Done"_s);
        QVERIFY(QFile::exists(screen.root + u"/cut.otio"_s));
        for (QString &call : calls)
            call = call.arg(screen.apps);
        QCOMPARE(screen.workspace->calls, calls);
    }

    void premiereHandOffs_data()
    {
        QTest::addColumn<bool>("selects");
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("call");
        const QStringList both{u"Premiere 2025"_s, u"Premiere CC"_s};
        QTest::newRow("script to the first installed") << false << both << u"open %1/vorlix-premiere.jsx with %2/Premiere 2025"_s;
        QTest::newRow("XML to the default handler") << false << QStringList() << u"open %1/vorlix-markers.xml%2"_s;
        QTest::newRow("selects to the first installed") << true << both << u"open %1/vorlix-selects.xml with %2/Premiere 2025"_s;
    }

    void premiereHandOffs()
    {
        QFETCH(bool, selects);
        QFETCH(QStringList, installed);
        QFETCH(QString, call);
        Screen screen(installed);
        if (selects) {
            screen.showTranscript();
            TranscriptDriver::click(screen.view.get(), u"s2"_s);
            TranscriptDriver::chooseFromMenu(screen.view.get(), u"s2"_s, u"Grade B"_s);
            screen.click(u"Open selects in Premiere Pro"_s);
            QCOMPARE(contents(screen.temp + u"/vorlix-selects.xml"_s),
                     generateSelectsXML(harbour(), {u"s2"_s}, {{u"s2"_s, u"B"_s}}).toUtf8());
        } else {
            screen.click(u"Open in Premiere Pro"_s);
            QTRY_COMPARE(screen.workspace->calls.size(), 1);
            QCOMPARE(contents(screen.temp + u"/vorlix-markers.xml"_s), generatePremiereXML(harbour()).toUtf8());
            QVERIFY(contents(screen.temp + u"/vorlix-premiere.jsx"_s).contains("it\\'s tmp/vorlix-markers.xml"));
        }
        QCOMPARE(screen.workspace->calls, QStringList{call.arg(screen.temp, installed.isEmpty() ? QString() : screen.apps)});
    }

    void analysisRequests()
    {
        Screen screen;
        const QList<QUrl> files{QUrl::fromLocalFile(u"/footage/A001.mov"_s)};
        QTRY_COMPARE(screen.view->session().id, u"harbour"_s);
        screen.center.post(Notifications::analyseFiles, {{u"files"_s, QVariantList{files.first()}}, {u"sessionId"_s, u"second"_s}});
        QVERIFY(screen.analysed.isEmpty());
        QVERIFY(screen.pending.hasPending(u"second"_s)); // left for that session's screen

        screen.center.post(Notifications::analyseFiles, {{u"files"_s, QVariantList{files.first()}}, {u"sessionId"_s, u"harbour"_s}});
        QCOMPARE(screen.analysed.size(), 1);
        QCOMPARE(screen.analysed.first().sessionId, u"harbour"_s);
        QCOMPARE(screen.analysed.first().files, files);

        // The other session's request runs once its screen shows it.
        screen.shell.state.setSelectedSession(second());
        QTRY_COMPARE(screen.analysed.size(), 2);
        QCOMPARE(screen.analysed.last().sessionId, u"second"_s);
        QVERIFY(!screen.pending.hasPending(u"second"_s));

        // The screen's own button asks for files only; a cancelled panel runs nothing.
        screen.shell.desktop.fileAnswers = {{}, files};
        QPushButton *analyse = screen.view->findChild<QPushButton *>(u"analyseButton"_s);
        QCOMPARE(analyse->text(), u"Analyse Footage with AI"_s);
        analyse->click();
        QCOMPARE(screen.analysed.size(), 2);
        QCOMPARE(screen.shell.desktop.openRequests.last().message, u"Select footage files to analyse"_s);
        QVERIFY(!screen.shell.desktop.openRequests.last().allowsFolders);
        analyse->click();
        QCOMPARE(screen.analysed.size(), 3);
    }

    // The real panel: with folders allowed, confirming a selected folder returns the folder
    // instead of opening it; files only, the selected files come back.
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
        auto *dialog = window.findChild<QFileDialog *>();
        QVERIFY(dialog);
        const QFileInfo target(root.filePath(selected));
        dialog->setDirectory(target.absolutePath());
        dialog->selectFile(target.fileName());
        QMetaObject::invokeMethod(dialog, "accept"); // the Open button
        QCOMPARE(chosen, QList<QUrl>{QUrl::fromLocalFile(target.absoluteFilePath())});
    }

    void analysisButtonFollowsTheRun()
    {
        Screen screen;
        screen.holdRuns = true;
        QTRY_COMPARE(screen.view->session().id, u"harbour"_s);
        QPushButton *analyse = screen.view->findChild<QPushButton *>(u"analyseButton"_s);
        screen.view->runAnalysis({QUrl::fromLocalFile(u"/footage/A001.mov"_s)});
        QVERIFY(!analyse->isEnabled());
        QCOMPARE(analyse->text(), u"Extracting audio (1/1): A001.mov"_s);

        // Another session's screen shows its own, idle analysis; the run goes on meanwhile.
        screen.shell.state.setSelectedSession(second());
        QTRY_COMPARE(screen.view->session().id, u"second"_s);
        QVERIFY(analyse->isEnabled());
        QCOMPARE(analyse->text(), u"Analyse Footage with AI"_s);
        screen.shell.state.setSelectedSession(harbour());
        QTRY_COMPARE(screen.view->session().id, u"harbour"_s);
        QVERIFY(!analyse->isEnabled());

        Q_EMIT screen.gate.opened();
        QTRY_VERIFY(analyse->isEnabled());
        QCOMPARE(analyse->text(), u"Analyse Footage with AI"_s);
        const QList<QLabel *> lines = screen.view->findChildren<QLabel *>(u"analysisResult"_s);
        QCOMPARE(lines.size(), 1);
        QCOMPARE(lines.first()->text(), u"A001.mov: 2 audio + 4 visual markers (300 words)"_s);
        QTRY_VERIFY(lines.first()->isVisible());
    }
};

QTEST_MAIN(SessionDetailTest)
#include "SessionDetailTest.moc"
