#include "ExpectedDocuments.h"

#include "export/EditorHandoff.h"
#include "export/OtioTimeline.h"
#include "export/PremiereScript.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "export/TextCleaning.h"

#include <QTest>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

ShootMarker marker(const QString &id, const QString &type, const QString &timecode)
{
    ShootMarker m;
    m.id = id;
    m.markerType = type;
    m.timecode = timecode;
    return m;
}

MediaClip clip(const QString &path, const std::optional<QString> &timecode, double duration)
{
    MediaClip c;
    c.id = path;
    c.path = path;
    c.filename = path.section(u'/', -1);
    c.timecode = timecode;
    c.duration = duration;
    return c;
}

ShootSession session(const QString &title, QList<ShootMarker> markers, QList<MediaClip> clips = {})
{
    ShootSession s;
    s.id = s.shareToken = "tok"_L1;
    s.title = title;
    s.fps = 25;
    s.markers = std::move(markers);
    s.matchedClips = std::move(clips);
    return s;
}

QDateTime at(int seconds)
{
    return QDateTime::fromSecsSinceEpoch(1700000000 + seconds, Qt::UTC);
}

// Compares line by line first, so a mismatch names the line instead of dumping two documents.
void compareDocuments(const QString &actual, const QString &expected)
{
    const QStringList a = actual.split(u'\n'), e = expected.split(u'\n');
    for (qsizetype i = 0; i < std::min(a.size(), e.size()); ++i)
        QVERIFY2(a[i] == e[i], qPrintable(u"line %1:\n  got      [%2]\n  expected [%3]"_s.arg(i + 1).arg(a[i], e[i])));
    QCOMPARE(a.size(), e.size());
    QCOMPARE(actual, expected);
}

} // namespace

class ExportDocumentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textCleaning_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("ascii");
        QTest::addColumn<QString>("xml");
        QTest::newRow("accent and emoji") << u"Café & Co 😀"_s << u"Caf & Co "_s << u"Caf &amp; Co "_s;
        QTest::newRow("combining mark takes its base") << u"xe\u0301y"_s << u"xy"_s << u"xy"_s;
        QTest::newRow("combining mark on a quote") << u"a\"\u0301b"_s << u"ab"_s << u"ab"_s;
        QTest::newRow("controls and DEL") << u"a\r\nb\tc\u007fd\u0001e"_s << u"abcde"_s << u"abcde"_s;
        QTest::newRow("all five specials") << u"<a href=\"x\">'&'</a>"_s << u"<a href=\"x\">'&'</a>"_s
                                           << u"&lt;a href=&quot;x&quot;&gt;&apos;&amp;&apos;&lt;/a&gt;"_s;
        QTest::newRow("backslash survives") << u"a\\b"_s << u"a\\b"_s << u"a\\b"_s;
        QTest::newRow("lone surrogate") << QString(QChar(0xD800)) + u"ok"_s << u"ok"_s << u"ok"_s;
        QTest::newRow("cut before escaping") << QString(199, u'a') + u"&&"_s << QString(199, u'a') + u'&'
                                             << QString(199, u'a') + u"&amp;"_s;
        QTest::newRow("cut counts kept characters") << u"é"_s.repeated(50) + QString(300, u'b') << QString(200, u'b')
                                                    << QString(200, u'b');
    }

    void textCleaning()
    {
        QFETCH(QString, text);
        QFETCH(QString, ascii);
        QFETCH(QString, xml);
        QCOMPARE(safeASCII(text), ascii);
        QCOMPARE(safeXML(text), xml);
    }

    void pathEncoding_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("encoded");
        QTest::newRow("space") << u"/Volumes/Card A/C0001.MP4"_s << u"/Volumes/Card%20A/C0001.MP4"_s;
        QTest::newRow("kept sub-delimiters") << u"/a/!$&'()*+,;=:@-._~"_s << u"/a/!$&'()*+,;=:@-._~"_s;
        QTest::newRow("encoded bytes") << u"/é/%#?\"\\<>"_s << u"/%C3%A9/%25%23%3F%22%5C%3C%3E"_s;
    }

    void pathEncoding()
    {
        QFETCH(QString, path);
        QFETCH(QString, encoded);
        QCOMPARE(percentEncodedPath(path), encoded);
    }

    void edl()
    {
        ShootMarker sayHi = marker("1"_L1, "inout"_L1, "00:59:59:24"_L1);
        sayHi.summary = u"Say \"hi\""_s;
        sayHi.quote = "It's fine"_L1;
        ShootMarker raw = marker("2"_L1, "log"_L1, "01:00:00:00"_L1);
        raw.timecodeOut = "01:00:05:00"_L1;
        raw.raw = "raw\nline"_L1;
        ShootMarker unknown = marker("3"_L1, "broll"_L1, "01:00:10:00"_L1);
        unknown.quote = "<q>"_L1;
        ShootMarker bad = marker("4"_L1, "earmark"_L1, "bad"_L1);
        bad.summary = "x"_L1;
        bad.raw = "not used"_L1;

        compareDocuments(generateResolveEDL(session(u"Interview: café & co"_s, {sayHi, raw, unknown, bad})),
                         "TITLE: Interview: caf &amp; co\n"
                         "FCM: NON-DROP FRAME\n"
                         "\n"
                         "001  001      V     C        00:59:59:24 01:00:00:00 00:59:59:24 01:00:00:00\n"
                         "* FROM CLIP NAME: Say &quot;hi&quot; -- \"It&apos;s fine\"\n"
                         "|C:ResolveColorGreen |M:Say &quot;hi&quot; -- \"It&apos;s fine\" |D:1\n"
                         "\n"
                         "002  001      V     C        01:00:00:00 01:00:05:00 01:00:00:00 01:00:05:00\n"
                         "|C:ResolveColorBlue |M:rawline |D:1\n"
                         "\n"
                         "003  001      V     C        01:00:10:00 01:00:10:01 01:00:10:00 01:00:10:01\n"
                         "|C:ResolveColorBlue |M: -- \"&lt;q&gt;\" |D:1\n"
                         "\n"
                         "004  001      V     C        bad bad bad bad\n"
                         "* FROM CLIP NAME: x\n"
                         "|C:ResolveColorPurple |M:x |D:1\n"
                         "\n"_L1);
        QCOMPARE(generateResolveEDL(session({}, {})), "TITLE: \nFCM: NON-DROP FRAME\n\n"_L1);
    }

    void edlEventNumbers()
    {
        QList<ShootMarker> markers(1000, marker("m"_L1, "story"_L1, "01:00:00:00"_L1));
        const QStringList lines = generateResolveEDL(session("t"_L1, markers)).split(u'\n');
        // Header of three lines, then three lines per event.
        QVERIFY(lines[3 + 9 * 3].startsWith("010  001"_L1));
        QVERIFY(lines[3 + 999 * 3].startsWith("1000  001"_L1));
        QCOMPARE(lines[4], "|C:ResolveColorFuchsia |M: |D:1"_L1);
    }

    void premiereXmlWithoutClips()
    {
        ShootMarker wide = marker("1"_L1, "visual"_L1, "10:00:05:00"_L1);
        wide.summary = "Wide of crowd"_L1;
        wide.quote = "It's \\ fine"_L1;
        ShootMarker broll = marker("2"_L1, "b-roll"_L1, "10:00:00:10"_L1);
        broll.timecodeOut = "10:00:02:00"_L1;
        broll.raw = u"e\u0301tape\ttwo"_s;
        const ShootMarker unreadable = marker("3"_L1, "log"_L1, "bad"_L1);
        compareDocuments(generatePremiereXML(session(u"Café & Co \"<x>\" 😀\n"_s, {wide, broll, unreadable}), 1),
                         Expected::xmlNoClips);
        compareDocuments(generatePremiereXML(session({}, {}), 1), Expected::xmlEmpty);
    }

    void premiereXmlWithClips()
    {
        MediaClip b = clip("/Volumes/Card A/B&'.MOV"_L1, "10:00:10:00"_L1, 5.9);
        b.width = 3840;
        b.height = 2160;
        const MediaClip a = clip("/footage/A001.mov"_L1, "10:00:00:00"_L1, 4.0);
        ShootMarker laugh = marker("1"_L1, "soundbite"_L1, "10:00:01:00"_L1);
        laugh.summary = "Laugh"_L1;
        laugh.quote = "ha"_L1;
        ShootMarker atClipEnd = marker("2"_L1, "note"_L1, "10:00:04:00"_L1);
        ShootMarker why = marker("3"_L1, "question"_L1, "10:00:10:05"_L1);
        why.timecodeOut = "10:00:11:00"_L1;
        why.summary = "Why?"_L1;
        ShootMarker inGap = marker("4"_L1, "log"_L1, "10:00:06:00"_L1);
        compareDocuments(generatePremiereXML(session("Clips"_L1, {laugh, atClipEnd, why, inGap}, {b, a}), 2),
                         Expected::xmlClips);
    }

    void selects()
    {
        MediaClip c1 = clip("/f/C1.mov"_L1, "10:00:00:00"_L1, 60.0);
        c1.width = 1280;
        c1.height = 720;
        const MediaClip c2 = clip("/f/C2.mov"_L1, "11:00:00:00"_L1, 30.5);
        ShootMarker joke = marker("a"_L1, "log"_L1, "10:00:04:00"_L1);
        joke.summary = "Laughs at the joke"_L1;
        joke.createdAt = at(20);
        ShootMarker noClip = marker("b"_L1, "log"_L1, "12:00:00:00"_L1);
        noClip.createdAt = at(10);
        ShootMarker unnamed = marker("c"_L1, "log"_L1, "11:00:10:00"_L1);
        unnamed.timecodeOut = "11:00:12:00"_L1;
        unnamed.createdAt = at(5);
        ShootMarker unpicked = marker("d"_L1, "log"_L1, "10:00:05:00"_L1);
        const ShootSession s = session("Day 1"_L1, {joke, noClip, unnamed, unpicked}, {c2, c1});
        const QHash<QString, QString> grades{{"a"_L1, "A"_L1}, {"c"_L1, "B"_L1}, {"d"_L1, "C"_L1}};

        compareDocuments(generateSelectsXML(s, {"a"_L1, "b"_L1, "c"_L1, "zzz"_L1}, grades), Expected::selects);
        QCOMPARE(generateSelectsXML(s, {"zzz"_L1}, grades), QString());
        QCOMPARE(generateSelectsXML(s, {}, grades), QString());
    }

    void selectsGradeIsCutWithTheLabel()
    {
        ShootMarker full = marker("a"_L1, "log"_L1, "00:00:01:00"_L1);
        full.summary = QString(200, u'x');
        const QString document = generateSelectsXML(session("t"_L1, {full}, {clip("/c.mov"_L1, {}, 10.0)}), {"a"_L1},
                                                    {{"a"_L1, "A"_L1}});
        QVERIFY(document.contains("<name>"_L1 + QString(200, u'x') + "</name>"_L1));
        QVERIFY(!document.contains("Grade"_L1));
    }

    void otio()
    {
        compareDocuments(generateOTIO(session("Say \"hi\" \\ there"_L1, {})), Expected::otioEmpty);

        ShootMarker go = marker("1"_L1, "insight"_L1, "00:00:10:00"_L1);
        go.summary = "He said \"go\""_L1;
        go.quote = "q\\"_L1;
        compareDocuments(generateOTIO(session("Gap"_L1, {go, marker("2"_L1, "unknown"_L1, "00:00:02:00"_L1)})),
                         Expected::otioGap);

        MediaClip x = clip("/a/X \"1\".mov"_L1, "10:00:00:00"_L1, 2.5);
        x.detectedFps = 50;
        const MediaClip later = clip("/b/Y.mov"_L1, "11:00:00:00"_L1, 1.0);
        const MediaClip first = clip("/c/Y.mov"_L1, "10:30:00:00"_L1, 1.0);
        ShootMarker intro = marker("1"_L1, "story"_L1, "10:00:01:00"_L1);
        intro.summary = "Intro"_L1;
        ShootMarker lost = marker("2"_L1, "gv"_L1, "11:00:00:10"_L1);
        ShootMarker retake = marker("3"_L1, "retake"_L1, "10:30:00:05"_L1);
        retake.quote = "x\"y"_L1;
        compareDocuments(generateOTIO(session("Clips"_L1, {intro, lost, retake}, {later, x, first})),
                         Expected::otioClips);
    }

    void script()
    {
        compareDocuments(premiereScript("/tmp/it's\\x/vorlix-markers.xml"_L1), Expected::script);
        compareDocuments(resolveImportInstructions("timeline.otio"_L1), Expected::instructions);
    }

    // Durations and timecodes no real clip has must still give a document, not a crash.
    void absurdDurations_data()
    {
        QTest::addColumn<double>("duration");
        QTest::addColumn<QString>("timecode");
        QTest::newRow("nan") << std::nan("") << u"10:00:00:00"_s;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << u"10:00:00:00"_s;
        QTest::newRow("minus infinite") << -std::numeric_limits<double>::infinity() << u"10:00:00:00"_s;
        QTest::newRow("huge") << 1e300 << u"10:00:00:00"_s;
        QTest::newRow("just past 2^63") << 9.3e18 << u"-9000000000000000:00:00:00"_s;
        QTest::newRow("negative") << -12.5 << u"10:00:00:00"_s;
    }

    void absurdDurations()
    {
        QFETCH(double, duration);
        QFETCH(QString, timecode);
        ShootMarker m = marker("1"_L1, "log"_L1, "10:00:01:00"_L1);
        m.timecodeOut = "99999999:00:00:00"_L1;
        ShootSession s = session("t"_L1, {m}, {clip("/a.mov"_L1, timecode, duration), clip("/b.mov"_L1, {}, 3.0)});
        QVERIFY(generatePremiereXML(s, 1).endsWith("</xmeml>"_L1));
        QVERIFY(generateSelectsXML(s, {"1"_L1}, {}).endsWith("</xmeml>"_L1));
        QVERIFY(generateOTIO(s).endsWith(u'}'));
        if (std::isinf(duration) && duration > 0)
            QVERIFY(generatePremiereXML(s, 1).contains("<duration>9223372036854775807</duration>"_L1));
    }

    void extensions_data()
    {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("saved");
        QTest::newRow("replaced") << u"/d/markers.txt"_s << u"edl"_s << u"/d/markers.edl"_s;
        QTest::newRow("case-sensitive") << u"/d/session.EDL"_s << u"edl"_s << u"/d/session.edl"_s;
        QTest::newRow("appended") << u"/d/timeline"_s << u"otio"_s << u"/d/timeline.otio"_s;
        QTest::newRow("kept") << u"/d/cut.otio"_s << u"otio"_s << u"/d/cut.otio"_s;
        QTest::newRow("upper case otio") << u"/d/cut.OTIO"_s << u"otio"_s << u"/d/cut.otio"_s;
        QTest::newRow("json") << u"/d/timeline.json"_s << u"otio"_s << u"/d/timeline.otio"_s;
        QTest::newRow("dot in folder only") << u"/d.v2/timeline"_s << u"otio"_s << u"/d.v2/timeline.otio"_s;
        QTest::newRow("hidden file") << u"/d/.markers"_s << u"edl"_s << u"/d/.markers.edl"_s;
        QTest::newRow("last extension only") << u"/d/a.tar.gz"_s << u"edl"_s << u"/d/a.tar.edl"_s;
    }

    void extensions()
    {
        QFETCH(QString, chosen);
        QFETCH(QString, extension);
        QFETCH(QString, saved);
        QCOMPARE(ExportFiles::withExtension(chosen, extension), saved);
    }
};

QTEST_GUILESS_MAIN(ExportDocumentsTest)
#include "ExportDocumentsTest.moc"
