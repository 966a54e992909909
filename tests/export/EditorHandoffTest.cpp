// The hand-off to the editing applications: which application gets which file. The applications
// are folders in a temporary directory (the machine has none) and the workspace writes requests
// down; the files are really written and read back.
#include "export/EditorHandoff.h"
#include "export/PremiereScript.h"
#include "platform/ProcessWorkspace.h"
#include "RecordingWorkspace.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Most preferred first.
const QStringList premieres{u"Premiere 2026.app"_s, u"Premiere 2025.app"_s, u"Premiere CC.app"_s};
const QStringList resolves{u"DaVinci Resolve.app"_s, u"DaVinci Resolve Studio.app"_s};

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
    const QString m_temp = m_root.filePath(u"it's tmp"_s); // the hand-off's temporary directory
    const QString m_apps = m_root.filePath(u"Applications"_s);

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_root.isValid() && QDir(m_temp).removeRecursively() && QDir(m_apps).removeRecursively() && QDir().mkpath(m_temp));
    }

    // Every request for each set of installed applications: which application gets which file.
    void handoff_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("calls");
        const QString markers = m_temp + u"/vorlix-markers.xml"_s, selects = m_temp + u"/vorlix-selects.xml"_s;
        const QString script = m_temp + u"/vorlix-premiere.jsx"_s;
        const auto with = [this](const QString &file, const QString &app) { return u"open "_s + file + u" with "_s + m_apps + u'/' + app; };
        const auto launch = [this](const QString &app) { return u"launch "_s + m_apps + u'/' + app; };
        QTest::newRow("all") << premieres + resolves << QStringList{with(script, premieres[0]), with(selects, premieres[0]), launch(resolves[0])};
        QTest::newRow("first choices missing") << QStringList{premieres[1], premieres[2], resolves[1]}
                                               << QStringList{with(script, premieres[1]), with(selects, premieres[1]), launch(resolves[1])};
        QTest::newRow("none: nothing opened") << QStringList() << QStringList();
    }

    void handoff()
    {
        QFETCH(QStringList, installed);
        QFETCH(QStringList, calls);
        for (const QString &app : installed)
            QVERIFY(QDir().mkpath(m_apps + u'/' + app));
        const auto inApps = [this](QStringList apps) { for (QString &app : apps) app.prepend(m_apps + u'/'); return apps; };
        RecordingWorkspace workspace;
        const EditorHandoff handoff(workspace, m_temp, {inApps(premieres), inApps(resolves)});
        handoff.openInPremiere(u"<xmeml/>"_s);
        handoff.openSelectsInPremiere(QString());
        handoff.launchResolve();
        QCOMPARE(workspace.calls, calls);
        const QString markers = m_temp + u"/vorlix-markers.xml"_s;
        QCOMPARE(contents(markers), "<xmeml/>");
        QCOMPARE(contents(m_temp + u"/vorlix-premiere.jsx"_s), premiereScript(markers).toUtf8());
        QCOMPARE(contents(m_temp + u"/vorlix-selects.xml"_s), QByteArray()); // written even with no select
    }

    void failedWritesStillOpen()
    {
        const QString premiere = m_apps + u'/' + premieres[0];
        QVERIFY(QDir().mkpath(premiere));
        RecordingWorkspace workspace;
        const QString missing = m_root.filePath(u"no such dir"_s);
        EditorHandoff(workspace, missing, {{premiere}, {}}).openInPremiere(u"x"_s);
        QVERIFY(!QFile::exists(missing));
        QCOMPARE(workspace.calls, QStringList{u"open "_s + missing + u"/vorlix-premiere.jsx with "_s + premiere});
    }

#if defined(Q_OS_LINUX)
    // The real process-based workspace, with a fake application that writes down its arguments
    // (aside first, then renamed, so the record appears whole). Each wait ends on the record.
    void processWorkspaceStartsTheApplication()
    {
        const QString fake = m_root.filePath(u"fake editor"_s), record = m_root.filePath(u"started.txt"_s);
        QFile script(fake);
        const QByteArray program = u"#!/bin/sh\nprintf '%s|' \"$@\" > \"%1.part\" && mv \"%1.part\" \"%1\"\n"_s.arg(record).toUtf8();
        QVERIFY(script.open(QIODevice::WriteOnly, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner) && script.write(program) == program.size());
        script.close();

        ProcessWorkspace workspace;
        workspace.openWithApplication(u"/tmp/it's a file.jsx"_s, fake);
        QTRY_VERIFY2_WITH_TIMEOUT(contents(record) == "/tmp/it's a file.jsx|", "the fake editor was not started with the file", 60000);
        workspace.launchApplication(fake);
        QTRY_VERIFY2_WITH_TIMEOUT(contents(record) == "|", "the fake editor was not launched without arguments", 60000);
    }
#endif
};

QTEST_GUILESS_MAIN(EditorHandoffTest)
#include "EditorHandoffTest.moc"
