// Every writer against its golden document (tests/data/export), and the pure rules the documents
// are made of.
#include "support/TestData.h"

#include "export/EditorHandoff.h"
#include "export/OtioTimeline.h"
#include "export/Preflight.h"
#include "export/PremiereScript.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "export/TextCleaning.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

MediaClip clip(const QString &path, const std::optional<QString> &timecode, double duration, std::optional<int> width = {},
               std::optional<int> height = {}, std::optional<int> fps = {})
{
    return {.id = path, .path = path, .filename = path.section(u'/', -1), .timecode = timecode, .duration = duration,
            .width = width, .height = height, .detectedFps = fps};
}

ShootSession session(const QString &title, QList<ShootMarker> markers, QList<MediaClip> clips = {})
{
    return {.id = "tok"_L1, .shareToken = "tok"_L1, .title = title, .markers = std::move(markers), .matchedClips = std::move(clips)};
}

} // namespace

class ExportDocumentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documents_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("golden");

        QTest::newRow("edl") << generateResolveEDL(session(u"Interview: café & co"_s, {
            {.id = "1"_L1, .markerType = "inout"_L1, .timecode = "00:59:59:24"_L1, .summary = u"Say \"hi\""_s, .quote = "It's fine"_L1},
            {.id = "2"_L1, .markerType = "log"_L1, .timecode = "01:00:00:00"_L1, .timecodeOut = "01:00:05:00"_L1, .raw = "raw\nline"_L1},
            {.id = "3"_L1, .markerType = "broll"_L1, .timecode = "01:00:10:00"_L1, .quote = "<q>"_L1},
            {.id = "4"_L1, .markerType = "earmark"_L1, .timecode = "bad"_L1, .summary = "x"_L1, .raw = "not used"_L1},
        })) << u"edl-basic.edl"_s;
        QTest::newRow("edl empty") << generateResolveEDL(session({}, {})) << u"edl-empty.edl"_s;

        QTest::newRow("xmeml without clips") << generatePremiereXML(session(u"Café & Co \"<x>\" 😀\n"_s, {
            {.id = "1"_L1, .markerType = "visual"_L1, .timecode = "10:00:05:00"_L1, .summary = "Wide of crowd"_L1, .quote = "It's \\ fine"_L1},
            {.id = "2"_L1, .markerType = "b-roll"_L1, .timecode = "10:00:00:10"_L1, .timecodeOut = "10:00:02:00"_L1, .raw = u"e\u0301tape\ttwo"_s},
            {.id = "3"_L1, .markerType = "log"_L1, .timecode = "bad"_L1},
        }), 1) << u"xmeml-markers.xml"_s;
        QTest::newRow("xmeml empty") << generatePremiereXML(session({}, {}), 1) << u"xmeml-empty.xml"_s;
        QTest::newRow("xmeml with clips") << generatePremiereXML(session("Clips"_L1, {
            {.id = "1"_L1, .markerType = "soundbite"_L1, .timecode = "10:00:01:00"_L1, .summary = "Laugh"_L1, .quote = "ha"_L1},
            {.id = "2"_L1, .markerType = "note"_L1, .timecode = "10:00:04:00"_L1}, // at the end of its clip
            {.id = "3"_L1, .markerType = "question"_L1, .timecode = "10:00:10:05"_L1, .timecodeOut = "10:00:11:00"_L1, .summary = "Why?"_L1},
            {.id = "4"_L1, .markerType = "log"_L1, .timecode = "10:00:06:00"_L1}, // between the clips
        }, {clip("/Volumes/Card A/B&'.MOV"_L1, "10:00:10:00"_L1, 5.9, 3840, 2160), clip("/footage/A001.mov"_L1, "10:00:00:00"_L1, 4.0)}),
            2) << u"xmeml-with-clips.xml"_s;

        // Picked: one marker in a clip, one in no clip, one unnamed, and an id no marker has.
        const auto at = [](int seconds) { return QDateTime::fromSecsSinceEpoch(1700000000 + seconds, Qt::UTC); };
        QTest::newRow("selects") << generateSelectsXML(session("Day 1"_L1, {
            {.id = "a"_L1, .markerType = "log"_L1, .timecode = "10:00:04:00"_L1, .summary = "Laughs at the joke"_L1, .createdAt = at(20)},
            {.id = "b"_L1, .markerType = "log"_L1, .timecode = "12:00:00:00"_L1, .createdAt = at(10)},
            {.id = "c"_L1, .markerType = "log"_L1, .timecode = "11:00:10:00"_L1, .timecodeOut = "11:00:12:00"_L1, .createdAt = at(5)},
            {.id = "d"_L1, .markerType = "log"_L1, .timecode = "10:00:05:00"_L1},
        }, {clip("/f/C2.mov"_L1, "11:00:00:00"_L1, 30.5), clip("/f/C1.mov"_L1, "10:00:00:00"_L1, 60.0, 1280, 720)}),
            {"a"_L1, "b"_L1, "c"_L1, "zzz"_L1}, {{"a"_L1, "A"_L1}, {"c"_L1, "B"_L1}, {"d"_L1, "C"_L1}}, {}) << u"selects.xml"_s;

        // Utterance picks follow the marker pick in transcript order; "a" names a marker and an
        // utterance and stays a marker pick; "u4" falls on no clip but keeps its number.
        const auto said = [](const char *id, const char *text, const char *timecode) {
            return TranscriptSegment{.id = QString::fromLatin1(id), .speaker = "S1"_L1, .text = QString::fromUtf8(text),
                                     .timecode = QString::fromLatin1(timecode)};
        };
        QTest::newRow("selects with utterances") << generateSelectsXML(session("Day 2"_L1, {
            {.id = "a"_L1, .markerType = "log"_L1, .timecode = "10:00:20:00"_L1, .summary = "Marker"_L1},
        }, {clip("/f/C1.mov"_L1, "10:00:00:00"_L1, 60.0)}),
            {"a"_L1, "u1"_L1, "u2"_L1, "u4"_L1, "u5"_L1, "zzz"_L1}, {{"u1"_L1, "A"_L1}, {"u5"_L1, "C"_L1}},
            {said("u1", "Runs to the next one & <on>", "10:00:02:00"), said("u2", "Next starts earlier", "10:00:07:00"),
             said("u3", "Not picked", "10:00:05:00"), said("a", "Same id as the marker", "10:00:40:00"),
             said("u4", "Off the clip", "11:00:00:00"), said("u5", "Last, ten seconds", "10:00:30:00")}) << u"selects-utterances.xml"_s;

        QTest::newRow("otio empty") << generateOTIO(session("Say \"hi\" \\ there"_L1, {})) << u"otio-empty.otio"_s;
        QTest::newRow("otio gap") << generateOTIO(session("Gap"_L1, {
            {.id = "1"_L1, .markerType = "insight"_L1, .timecode = "00:00:10:00"_L1, .summary = "He said \"go\""_L1, .quote = "q\\"_L1},
            {.id = "2"_L1, .markerType = "unknown"_L1, .timecode = "00:00:02:00"_L1},
        })) << u"otio-gap.otio"_s;
        QTest::newRow("otio with clips") << generateOTIO(session("Clips"_L1, {
            {.id = "1"_L1, .markerType = "story"_L1, .timecode = "10:00:01:00"_L1, .summary = "Intro"_L1},
            {.id = "2"_L1, .markerType = "gv"_L1, .timecode = "11:00:00:10"_L1},
            {.id = "3"_L1, .markerType = "retake"_L1, .timecode = "10:30:00:05"_L1, .quote = "x\"y"_L1},
        }, {clip("/b/Y.mov"_L1, "11:00:00:00"_L1, 1.0), clip("/a/X \"1\".mov"_L1, "10:00:00:00"_L1, 2.5, {}, {}, 50),
            clip("/c/Y.mov"_L1, "10:30:00:00"_L1, 1.0)})) << u"otio-with-clips.otio"_s;

        QTest::newRow("premiere script") << premiereScript("/tmp/it's\\x/vorlix-markers.xml"_L1) << u"premiere-import.jsx"_s;
        QTest::newRow("resolve instructions") << resolveImportInstructions("timeline.otio"_L1) << u"resolve-import.txt"_s;
    }

    void documents()
    {
        QFETCH(QString, document);
        QFETCH(QString, golden);
        const QString mismatch = goldenMismatch(document, u"export/"_s + golden);
        QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
    }

    // What the golden documents are too small to show.
    void beyondTheGoldens()
    {
        const ShootSession longLabel = session("t"_L1, {{.id = "a"_L1, .markerType = "log"_L1, .timecode = "00:00:01:00"_L1,
                                                         .summary = QString(200, u'x')}}, {clip("/c.mov"_L1, {}, 10.0)});
        const QString selects = generateSelectsXML(longLabel, {"a"_L1}, {{"a"_L1, "A"_L1}}, {});
        QVERIFY2(selects.contains("<name>"_L1 + QString(200, u'x') + "</name>"_L1) && !selects.contains("Grade"_L1),
                 "a label at the length limit is cut or carries the grade");
        QVERIFY2(generateSelectsXML(longLabel, {"zzz"_L1}, {}, {}).isEmpty() && generateSelectsXML(longLabel, {}, {}, {}).isEmpty(),
                 "picks that name no marker, or none at all, give a document");
        const QList<ShootMarker> thousand(1000, {.id = "m"_L1, .markerType = "story"_L1, .timecode = "01:00:00:00"_L1});
        QVERIFY2(generateResolveEDL(session("t"_L1, thousand)).contains("\n1000  001 "_L1), "event numbers stop at three digits");
        // Frame arithmetic saturates: an infinite duration counts the largest 64-bit number of frames.
        const ShootMarker pastAnyClip{.id = "1"_L1, .markerType = "log"_L1, .timecode = "10:00:01:00"_L1, .timecodeOut = "99999999:00:00:00"_L1};
        const ShootSession infinite = session("t"_L1, {pastAnyClip}, {clip("/a.mov"_L1, "10:00:00:00"_L1, qInf()), clip("/b.mov"_L1, {}, 3.0)});
        QVERIFY2(generatePremiereXML(infinite, 1).contains("<duration>9223372036854775807</duration>"_L1), "an infinite duration does not saturate");
    }

    // Markers on footage are exactly those the xmeml sequence puts on its clips.
    void preflightCounts()
    {
        const QList<ShootMarker> markers{{.id = "on"_L1, .timecode = "10:00:01:00"_L1}, {.id = "gap"_L1, .timecode = "10:00:06:00"_L1},
                                         {.id = "end"_L1, .timecode = "10:00:05:00"_L1}, {.id = "late"_L1, .timecode = "10:00:10:00"_L1}};
        const ShootSession shoot = session("t"_L1, markers, {clip("/a/A.mov"_L1, "10:00:00:00"_L1, 5.9, {}, {}, 25),
                                                             clip("/a/B.mov"_L1, "10:00:10:00"_L1, 1.0, {}, {}, 50),
                                                             clip("/a/C.mov"_L1, {}, 1.0)});
        const Preflight checked = preflight(shoot);
        QCOMPARE(checked.markers, 4);
        QCOMPARE(checked.markersOnFootage, QStringList({"on"_L1, "late"_L1}));
        QCOMPARE(checked.markersOffFootage, QStringList({"gap"_L1, "end"_L1}));
        QCOMPARE(checked.clipsWithoutTimecode, QStringList{"C.mov"_L1});
        QCOMPARE(checked.clipsWithOtherFps, QStringList{"B.mov"_L1});
        QCOMPARE(checked.summary(), "2 of 4 markers are on matched footage; 1 clip has no timecode; 1 clip at another frame rate"_L1);
        const QString xml = generatePremiereXML(shoot, 1);
        QCOMPARE(xml.count("<marker>"_L1), checked.markersOnFootage.size());

        const Preflight withoutClips = preflight(session("t"_L1, markers.mid(0, 1)));
        QVERIFY(withoutClips.markersOnFootage.isEmpty() && !withoutClips.allClear());
        QCOMPARE(withoutClips.summary(), "0 of 1 marker is on matched footage"_L1);
        const Preflight clear = preflight(session("t"_L1, markers.mid(0, 1), {clip("/a/A.mov"_L1, "10:00:00:00"_L1, 5.0)}));
        QVERIFY(clear.allClear() && clear.summary().isEmpty());
    }

    // The rules the documents' text follows: "xml" the cleaning of free text (safeASCII, then
    // escaped), "path" the percent-encoding of file paths, ".ext" the extension a saved file gets.
    void textRules_data()
    {
        QTest::addColumn<QString>("rule");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("combining mark takes its base") << u"xml"_s << u"xe\u0301y"_s << u"xy"_s;
        QTest::newRow("combining mark on a quote") << u"xml"_s << u"a\"\u0301b"_s << u"ab"_s;
        QTest::newRow("controls and DEL") << u"xml"_s << u"a\r\nb\tc\u007fd\u0001e"_s << u"abcde"_s;
        QTest::newRow("lone surrogate") << u"xml"_s << QString(QChar(0xD800)) + u"ok"_s << u"ok"_s;
        QTest::newRow("cut before escaping") << u"xml"_s << QString(199, u'a') + u"&&"_s << QString(199, u'a') + u"&amp;"_s;
        QTest::newRow("cut counts kept characters") << u"xml"_s << u"é"_s.repeated(50) + QString(300, u'b') << QString(200, u'b');
        QTest::newRow("kept sub-delimiters") << u"path"_s << u"/a/!$&'()*+,;=:@-._~"_s << u"/a/!$&'()*+,;=:@-._~"_s;
        QTest::newRow("encoded bytes") << u"path"_s << u"/é/%#?\"\\<>"_s << u"/%C3%A9/%25%23%3F%22%5C%3C%3E"_s;
        QTest::newRow("extension replaced") << u".edl"_s << u"/d/markers.txt"_s << u"/d/markers.edl"_s;
        QTest::newRow("case-sensitive") << u".edl"_s << u"/d/session.EDL"_s << u"/d/session.edl"_s;
        QTest::newRow("appended") << u".otio"_s << u"/d/timeline"_s << u"/d/timeline.otio"_s;
        QTest::newRow("kept") << u".otio"_s << u"/d/cut.otio"_s << u"/d/cut.otio"_s;
        QTest::newRow("dot in folder only") << u".otio"_s << u"/d.v2/timeline"_s << u"/d.v2/timeline.otio"_s;
        QTest::newRow("hidden file") << u".edl"_s << u"/d/.markers"_s << u"/d/.markers.edl"_s;
        QTest::newRow("last extension only") << u".edl"_s << u"/d/a.tar.gz"_s << u"/d/a.tar.edl"_s;
    }

    void textRules()
    {
        QFETCH(QString, rule);
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(rule == "xml"_L1 ? safeXML(text) : rule == "path"_L1 ? percentEncodedPath(text) : ExportFiles::withExtension(text, rule.mid(1)),
                 expected);
    }
};

QTEST_GUILESS_MAIN(ExportDocumentsTest)
#include "ExportDocumentsTest.moc"
