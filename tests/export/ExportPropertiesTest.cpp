// Many generated sessions full of hostile text and absurd numbers: whatever goes in, every xmeml
// document must parse as XML, every OTIO document as JSON with the names intact, every file URL
// must be well formed, every EDL line must keep its shape, and the script must carry the path
// exactly in one string.
#include "export/OtioTimeline.h"
#include "export/PremiereScript.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "export/TextCleaning.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

const QStringList hostilePieces = {
    u"\""_s, u"'"_s, u"&"_s, u"<"_s, u">"_s, u"\\"_s, u"\\\""_s, u"&amp;"_s, u"]]>"_s, u"<!--"_s, u"\n"_s, u"\r\n"_s, u"\r"_s, u"\t"_s,
    QString(QChar(0)), u"\u0001"_s, u"\u001f"_s, u"\u007f"_s, u"😀"_s, u"👩‍👩‍👧"_s, u"e\u0301"_s, u"\u0301"_s, u"é"_s, u"ß"_s,
    u"日本"_s, u"\u200d"_s, u"\ufeff"_s, QString(QChar(0xD800)), QString(QChar(0xDC00)), u"%"_s, u"%20"_s, u"#"_s, u"?"_s, u" "_s,
    u"/"_s, u"plain"_s, u"Wide shot"_s, u"{}"_s, u"[LOG]"_s, u":"_s,
};

const QStringList oddTimecodes = {
    u"10:00:00:00"_s, u"00:59:59:24"_s, u"1:2:3"_s, u"bad"_s, u""_s, u"01:00:00;12"_s, u"-5:00:00:00"_s,
    u"99999999:00:00:00"_s, u"-9000000000000000:00:00:00"_s, u"0&1:<2>:\"3\":'4'"_s, u"10:00:10:00:05"_s,
    u"10:00\n00:00"_s, u"10:00:00:00\r\n|C:x"_s, u" 10 00 "_s, u"\t"_s, u"10:00:00:00\u2028"_s,
};

const QStringList types = {u"log"_s, u"inout"_s, u"earmark"_s, u"gv"_s, u"retake"_s, u"b-roll"_s, u""_s, u"Log"_s, u"<x>"_s, u"é"_s};

// NaN counts as no time, the infinities and 9.3e18 s (past 2^63 frames) saturate the frame count.
const QList<double> durations = {0.0, 0.5, 12.9, 3600.0, -3.0, 1e300, 9.3e18, qInf(), -qInf(), qQNaN()};

// The same seed gives the same sessions: braced initialisers run left to right.
struct Generator {
    QRandomGenerator random;

    int below(int n) { return int(random.bounded(n)); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename T> T pick(const QList<T> &from) { return from[below(int(from.size()))]; }
    std::optional<QString> maybe(int percent, QString (Generator::*make)()) { return chance(percent) ? std::optional((this->*make)()) : std::nullopt; }

    QString text()
    {
        QString t;
        for (int i = below(12); i > 0; --i)
            t += pick(hostilePieces);
        return chance(5) ? t + QString(250, u'x') : t;
    }

    QString timecode()
    {
        return chance(60) ? QString::asprintf("%02d:%02d:%02d:%02d", 10 + below(2), below(60), below(60), below(25)) : pick(oddTimecodes);
    }

    ShootSession session(int index)
    {
        ShootSession s{.id = QString::number(index), .shareToken = QString::number(index), .title = text(),
                       .fps = pick(QList<int>{24, 25, 30, 50, 60})};
        for (int i = below(30); i > 0; --i)
            s.markers.append({.id = QString::number(i), .markerType = pick(types), .timecode = timecode(),
                              .timecodeOut = maybe(40, &Generator::timecode), .summary = maybe(70, &Generator::text),
                              .quote = maybe(70, &Generator::text), .raw = maybe(70, &Generator::text),
                              .createdAt = QDateTime::fromSecsSinceEpoch(below(1000), Qt::UTC)});
        for (int i = chance(30) ? 0 : below(8); i > 0; --i) {
            const QString name = text();
            const QString folder = chance(20) ? text() : u'/' + text(); // relative now and then
            s.matchedClips.append({.id = QString::number(i), .path = folder + u'/' + name, .filename = name,
                                   .timecode = maybe(85, &Generator::timecode), .duration = pick(durations),
                                   .width = pick(QList<std::optional<int>>{{}, 3840}), .height = pick(QList<std::optional<int>>{{}, 2160}),
                                   .detectedFps = pick(QList<std::optional<int>>{{}, 24, 25, 50})});
        }
        return s;
    }
};

// The single-quoted string after "new File(" as the script reads it, when it closes on its own
// line before "');".
std::optional<QString> scriptPath(const QString &script)
{
    QString path;
    for (qsizetype i = script.indexOf("new File('"_L1) + 10; i < script.size(); ++i) {
        const QChar c = script[i];
        if (c == u'\'')
            return script.mid(i, 4) == "');\n"_L1 ? std::optional(path) : std::nullopt;
        if (c == u'\n' || c == u'\r' || c == QChar(0x2028) || c == QChar(0x2029))
            return std::nullopt;
        if (c != u'\\') {
            path += c;
        } else if (script[++i] == u'u') {
            path += QChar(script.mid(i + 1, 4).toUShort(nullptr, 16));
            i += 4;
        } else {
            path += script[i];
        }
    }
    return std::nullopt;
}

bool isFileURL(const QString &url, const QString &prefix)
{
    return url.startsWith(prefix) && QUrl(url, QUrl::StrictMode).isValid();
}

} // namespace

class ExportPropertiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyDocumentKeepsItsShape()
    {
        static const QRegularExpression event(u"^(\\d{3,})  001      V     C        (\\S*) (\\S*) \\2 \\3$"_s);
        static const QRegularExpression fromClip(u"^\\* FROM CLIP NAME: [ -~]*$"_s);
        static const QRegularExpression marker(u"^\\|C:ResolveColor[A-Z][a-z]+ \\|M:[ -~]* \\|D:1$"_s);
        Generator generate{QRandomGenerator(20261123)};
        for (int i = 0; i < 400; ++i) {
            const ShootSession session = generate.session(i);
            const QString where = u"session %1: "_s.arg(i);

            // xmeml parses; selects of no marker are the empty text, with nothing to parse.
            QSet<QString> picked;
            QHash<QString, QString> grades;
            for (const ShootMarker &m : session.markers) {
                if (generate.chance(50))
                    picked.insert(m.id);
                if (generate.chance(50))
                    grades.insert(m.id, generate.text());
            }
            for (const QString &document : {generatePremiereXML(session, 1 + generate.below(3)), generateSelectsXML(session, picked, grades, {})}) {
                QXmlStreamReader reader(document);
                while (!document.isEmpty() && !reader.atEnd()) {
                    if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == "pathurl"_L1) {
                        const QString url = reader.readElementText();
                        QVERIFY2(isFileURL(url, u"file://localhost/"_s), qPrintable(where + url));
                    }
                }
                QVERIFY2(!reader.hasError(), qPrintable(where + reader.errorString() + u" on line "_s + QString::number(reader.lineNumber())));
            }

            // OTIO parses, and the names come through cleaned, with apostrophes for double quotes.
            const auto otioName = [](const std::optional<QString> &text) { return safeASCII(text.value_or(QString())).replace(u'"', u'\''); };
            QJsonParseError error;
            const QJsonObject timeline = QJsonDocument::fromJson(generateOTIO(session).toUtf8(), &error).object();
            QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(where + error.errorString()));
            QCOMPARE(timeline["name"_L1].toString(), otioName(session.title));
            const QJsonArray children = timeline["tracks"_L1]["children"_L1][0]["children"_L1].toArray();
            if (session.matchedClips.isEmpty()) {
                // Without clips the markers sit on one gap, in session order.
                QCOMPARE(children.size(), 1);
                const QJsonArray markers = children[0]["markers"_L1].toArray();
                QCOMPARE(markers.size(), session.markers.size());
                for (qsizetype m = 0; m < markers.size(); ++m) {
                    const ShootMarker &expected = session.markers[m];
                    QCOMPARE(markers[m]["name"_L1].toString(), otioName(expected.summary ? expected.summary : expected.raw));
                    QCOMPARE(markers[m]["metadata"_L1]["note"_L1].toString(), otioName(expected.quote));
                }
            } else {
                QVERIFY2(!children.isEmpty(), qPrintable(where + u"no clip on the track"_s));
                for (const QJsonValue &clip : children) {
                    const QString url = clip["media_reference"_L1]["target_url"_L1].toString();
                    QVERIFY2(isFileURL(url, u"file:///"_s), qPrintable(where + url));
                    const auto named = [&](const MediaClip &c) { return safeASCII(c.filename) == clip["name"_L1].toString(); };
                    QVERIFY2(std::any_of(session.matchedClips.begin(), session.matchedClips.end(), named),
                             qPrintable(where + u"no clip is named "_s + clip["name"_L1].toString()));
                }
            }

            // Every EDL line has one of the shapes, and the events are numbered in order with their
            // timecodes as stored as far as they are printable ASCII without spaces; the text ends with a line feed, so the last piece is empty.
            const QStringList lines = generateResolveEDL(session).split(u'\n');
            const bool framed = lines[0].startsWith("TITLE: "_L1) && lines.mid(1, 2) == QStringList{u"FCM: NON-DROP FRAME"_s, QString()};
            QVERIFY2(framed && lines.last().isEmpty(), qPrintable(where + u"header or end"_s));
            QStringList events, expected;
            for (const QString &line : lines.mid(3)) {
                const auto match = event.match(line);
                QVERIFY2(match.hasMatch() || line.isEmpty() || fromClip.match(line).hasMatch() || marker.match(line).hasMatch(),
                         qPrintable(where + line));
                if (match.hasMatch())
                    events.append(match.captured(1) + u' ' + match.captured(2));
            }
            for (qsizetype m = 0; m < session.markers.size(); ++m)
                expected.append(QString::asprintf("%03lld ", qlonglong(m + 1)) + safeASCII(session.markers[m].timecode).remove(u' '));
            QCOMPARE(events, expected);

            const QString path = session.matchedClips.isEmpty() ? generate.text() : session.matchedClips.first().path;
            QCOMPARE(scriptPath(premiereScript(path)), std::optional(path));
        }
    }
};

QTEST_GUILESS_MAIN(ExportPropertiesTest)
#include "ExportPropertiesTest.moc"
