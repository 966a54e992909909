// The hand-off to the editing applications. The applications themselves are fakes in a
// temporary folder (the machine has none); files are really written and read back.
#include "RecordingWorkspace.h"
#include "export/EditorHandoff.h"
#include "export/PremiereScript.h"
#include "platform/ProcessWorkspace.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

} // namespace

class EditorHandoffTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_root;
    QString m_temp;    // the "temporary directory" handed to the hand-off; its name has an apostrophe
    QString m_apps;

    QString app(const QString &name, bool installed)
    {
        const QString path = m_apps + u'/' + name;
        if (installed)
            QDir().mkpath(path);
        return path;
    }

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_root.isValid());
        m_temp = m_root.filePath(u"it's tmp"_s);
        m_apps = m_root.filePath(u"Applications"_s);
        QDir(m_temp).removeRecursively();
        QDir(m_apps).removeRecursively();
        QVERIFY(QDir().mkpath(m_temp));
    }

    void premiereGetsTheScript()
    {
        RecordingWorkspace workspace;
        const EditorLocations locations{{app(u"Premiere 2026.app"_s, false), app(u"Premiere 2025.app"_s, true),
                                         app(u"Premiere CC.app"_s, true)},
                                        {}};
        EditorHandoff(workspace, m_temp, locations).openInPremiere(u"<xmeml/>"_s);

        const QString xmlPath = m_temp + u"/vorlix-markers.xml"_s;
        const QString scriptPath = m_temp + u"/vorlix-premiere.jsx"_s;
        QCOMPARE(contents(xmlPath), "<xmeml/>");
        QCOMPARE(contents(scriptPath), premiereScript(xmlPath).toUtf8());
        QVERIFY(contents(scriptPath).contains("it\\'s tmp/vorlix-markers.xml');"));
        QCOMPARE(workspace.calls, QStringList{u"open "_s + scriptPath + u" with "_s + m_apps + u"/Premiere 2025.app"_s});
    }

    void withoutPremiereTheXmlGoesToTheDefaultHandler()
    {
        RecordingWorkspace workspace;
        EditorHandoff(workspace, m_temp, {{app(u"Premiere.app"_s, false)}, {}}).openInPremiere(u"x"_s);
        QCOMPARE(workspace.calls, QStringList{u"open "_s + m_temp + u"/vorlix-markers.xml"_s});
    }

    void selectsOpenInPremiereOrTheDefaultHandler()
    {
        RecordingWorkspace workspace;
        const QString path = m_temp + u"/vorlix-selects.xml"_s;
        EditorHandoff(workspace, m_temp, {{app(u"Premiere.app"_s, true)}, {}}).openSelectsInPremiere(u"<s/>"_s);
        QCOMPARE(contents(path), "<s/>");
        // No select: the file is emptied, and still opened.
        EditorHandoff(workspace, m_temp, {{}, {}}).openSelectsInPremiere(QString());
        QCOMPARE(contents(path), QByteArray());
        QCOMPARE(workspace.calls, (QStringList{u"open "_s + path + u" with "_s + m_apps + u"/Premiere.app"_s,
                                               u"open "_s + path}));
    }

    void failedWritesStillOpen()
    {
        RecordingWorkspace workspace;
        const QString missing = m_root.filePath(u"no such dir"_s);
        EditorHandoff(workspace, missing, {{}, {}}).openInPremiere(u"x"_s);
        QVERIFY(!QFile::exists(missing + u"/vorlix-markers.xml"_s));
        QCOMPARE(workspace.calls, QStringList{u"open "_s + missing + u"/vorlix-markers.xml"_s});
    }

    void resolveLaunchesTheFirstInstalled_data()
    {
        QTest::addColumn<bool>("plain");
        QTest::addColumn<bool>("studio");
        QTest::addColumn<QString>("launched");
        QTest::newRow("both") << true << true << u"DaVinci Resolve.app"_s;
        QTest::newRow("studio only") << false << true << u"DaVinci Resolve Studio.app"_s;
        QTest::newRow("none") << false << false << QString();
    }

    void resolveLaunchesTheFirstInstalled()
    {
        QFETCH(bool, plain);
        QFETCH(bool, studio);
        QFETCH(QString, launched);
        RecordingWorkspace workspace;
        const EditorLocations locations{
            {}, {app(u"DaVinci Resolve.app"_s, plain), app(u"DaVinci Resolve Studio.app"_s, studio)}};
        EditorHandoff(workspace, m_temp, locations).launchResolve();
        QCOMPARE(workspace.calls, launched.isEmpty() ? QStringList() : QStringList{u"launch "_s + m_apps + u'/' + launched});
    }

    void savedOtioNamesTheFileWritten()
    {
        const QString saved = ExportFiles::saveWithExtension(u"{\"name\": \"Café\"}"_s, m_temp + u"/timeline"_s, u"otio"_s);
        QCOMPARE(saved, m_temp + u"/timeline.otio"_s);
        QCOMPARE(contents(saved), u"{\"name\": \"Café\"}"_s.toUtf8());
        QVERIFY(resolveImportInstructions(QFileInfo(saved).fileName()).contains(u"3. Select timeline.otio\n"_s));
    }

#if defined(Q_OS_LINUX)
    // The real process-based workspace, with a fake application that records how it was started.
    void processWorkspaceStartsTheApplication()
    {
        const QString record = m_root.filePath(u"started.txt"_s);
        const QString fake = m_root.filePath(u"fake editor"_s);
        QFile script(fake);
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\nprintf '%s|' \"$@\" > \"" + record.toUtf8() + ".part\" && mv \"" + record.toUtf8()
                     + ".part\" \"" + record.toUtf8() + "\"\n");
        script.close();
        QVERIFY(script.setPermissions(script.permissions() | QFile::ExeOwner));

        ProcessWorkspace workspace;
        workspace.openWithApplication(u"/tmp/it's a file.jsx"_s, fake);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(record), 20000);
        QCOMPARE(contents(record), "/tmp/it's a file.jsx|");
        QFile::remove(record);
        workspace.launchApplication(fake);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(record), 20000);
        QCOMPARE(contents(record), "|");
    }
#endif
};

QTEST_GUILESS_MAIN(EditorHandoffTest)
#include "EditorHandoffTest.moc"
