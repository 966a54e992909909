// Many generated sessions full of hostile text: whatever goes in, every xmeml document must
// parse as XML, every OTIO document as JSON with the names intact, and every EDL line must keep
// its shape.
#include "export/OtioTimeline.h"
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
    u"\""_s, u"'"_s, u"&"_s, u"<"_s, u">"_s, u"\\"_s, u"\\\""_s, u"&amp;"_s, u"]]>"_s, u"<!--"_s,
    u"\n"_s, u"\r\n"_s, u"\r"_s, u"\t"_s, QString(QChar(0)), u"\u0001"_s, u"\u001f"_s, u"\u007f"_s,
    u"😀"_s, u"👩‍👩‍👧"_s, u"e\u0301"_s, u"\u0301"_s, u"é"_s, u"ß"_s, u"日本"_s, u"\u200d"_s, u"\ufeff"_s,
    QString(QChar(0xD800)), QString(QChar(0xDC00)), u"%"_s, u"%20"_s, u"#"_s, u"?"_s, u" "_s, u"/"_s,
    u"plain"_s, u"Wide shot"_s, u"{}"_s, u"[LOG]"_s, u":"_s,
};

const QStringList timecodes = {
    u"10:00:00:00"_s, u"10:00:01:12"_s, u"00:59:59:24"_s, u"1:2:3"_s, u"bad"_s, u""_s, u"01:00:00;12"_s,
    u"-5:00:00:00"_s, u"99999:00:00:00"_s, u"0&1:<2>:\"3\":'4'"_s, u"10:00:10:00:05"_s,
};

const QStringList types = {u"log"_s, u"inout"_s, u"earmark"_s, u"gv"_s, u"retake"_s, u"b-roll"_s, u""_s,
                           u"Log"_s, u"<x>"_s, u"é"_s};

class Generator
{
public:
    explicit Generator(quint32 seed) : m_random(seed) {}

    int below(int n) { return int(m_random.bounded(n)); }
    bool chance(int percent) { return below(100) < percent; }

    QString text()
    {
        QString t;
        for (int i = below(12); i > 0; --i)
            t += hostilePieces[below(int(hostilePieces.size()))];
        if (chance(5))
            t += QString(250, u'x');
        return t;
    }

    std::optional<QString> maybeText() { return chance(70) ? std::optional(text()) : std::nullopt; }

    QString timecode()
    {
        if (chance(60))
            return QString::asprintf("%02d:%02d:%02d:%02d", 10 + below(2), below(60), below(60), below(25));
        return timecodes[below(int(timecodes.size()))];
    }

    ShootSession session(int index)
    {
        ShootSession s;
        s.id = s.shareToken = QString::number(index);
        s.title = text();
        s.fps = QList<int>{24, 25, 30, 50, 60}[below(5)];
        for (int i = below(30); i > 0; --i) {
            ShootMarker m;
            m.id = QString::number(i);
            m.markerType = types[below(int(types.size()))];
            m.timecode = timecode();
            if (chance(40))
                m.timecodeOut = timecode();
            m.summary = maybeText();
            m.quote = maybeText();
            m.raw = maybeText();
            m.createdAt = QDateTime::fromSecsSinceEpoch(below(1000), Qt::UTC);
            s.markers.append(m);
        }
        for (int i = chance(30) ? 0 : below(8); i > 0; --i) {
            MediaClip c;
            c.id = QString::number(i);
            c.filename = text();
            c.path = u'/' + text() + u'/' + c.filename;
            if (chance(85))
                c.timecode = timecode();
            c.duration = QList<double>{0.0, 0.5, 12.9, 600.0, 3600.0, -3.0, 1e300, qInf(), qQNaN()}[below(9)];
            if (chance(50))
                c.detectedFps = QList<int>{24, 25, 50}[below(3)];
            if (chance(50)) {
                c.width = 3840;
                c.height = 2160;
            }
            s.matchedClips.append(c);
        }
        return s;
    }

private:
    QRandomGenerator m_random;
};

QString xmlError(const QString &document)
{
    QXmlStreamReader reader(document);
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError() ? reader.errorString() + u" at line "_s + QString::number(reader.lineNumber()) : QString();
}

QString otioName(const QString &text)
{
    return safeASCII(text).replace(u'"', u'\'');
}

} // namespace

class ExportPropertiesTest : public QObject
{
    Q_OBJECT

    static constexpr int sessionCount = 400;

private Q_SLOTS:
    void xmemlIsWellFormed()
    {
        Generator generate(20261123);
        for (int i = 0; i < sessionCount; ++i) {
            const ShootSession session = generate.session(i);
            const QString markers = generatePremiereXML(session, 1 + generate.below(3));
            QVERIFY2(xmlError(markers).isEmpty(), qPrintable(u"session %1: %2"_s.arg(i).arg(xmlError(markers))));
            QSet<QString> picked;
            QHash<QString, QString> grades;
            for (const ShootMarker &marker : session.markers) {
                if (generate.chance(50))
                    picked.insert(marker.id);
                if (generate.chance(50))
                    grades.insert(marker.id, generate.text());
            }
            const QString selects = generateSelectsXML(session, picked, grades);
            if (!selects.isEmpty())
                QVERIFY2(xmlError(selects).isEmpty(), qPrintable(u"session %1: %2"_s.arg(i).arg(xmlError(selects))));
        }
    }

    void otioIsValidJsonWithItsNames()
    {
        Generator generate(7);
        for (int i = 0; i < sessionCount; ++i) {
            const ShootSession session = generate.session(i);
            QJsonParseError error;
            const QJsonDocument document = QJsonDocument::fromJson(generateOTIO(session).toUtf8(), &error);
            QVERIFY2(error.error == QJsonParseError::NoError,
                     qPrintable(u"session %1: %2 at %3"_s.arg(i).arg(error.errorString()).arg(error.offset)));
            const QJsonObject timeline = document.object();
            QCOMPARE(timeline["name"_L1].toString(), otioName(session.title));
            const QJsonArray children =
                timeline["tracks"_L1]["children"_L1][0]["children"_L1].toArray();
            if (session.matchedClips.isEmpty()) {
                QCOMPARE(children.size(), 1);
                const QJsonArray markers = children[0]["markers"_L1].toArray();
                QCOMPARE(markers.size(), session.markers.size());
                for (qsizetype m = 0; m < markers.size(); ++m) {
                    const ShootMarker &marker = session.markers[m];
                    QCOMPARE(markers[m]["name"_L1].toString(),
                             otioName(marker.summary.value_or(marker.raw.value_or(QString()))));
                    QCOMPARE(markers[m]["metadata"_L1]["note"_L1].toString(), otioName(marker.quote.value_or(QString())));
                }
            } else {
                QVERIFY(!children.isEmpty());
                for (const QJsonValue &clip : children) {
                    const QString name = clip["name"_L1].toString();
                    QVERIFY(std::any_of(session.matchedClips.begin(), session.matchedClips.end(),
                                        [&](const MediaClip &c) { return safeASCII(c.filename) == name; }));
                    QVERIFY(clip["media_reference"_L1]["target_url"_L1].toString().startsWith("file:///"_L1));
                }
            }
        }
    }

    void edlLinesKeepTheirShape()
    {
        static const QRegularExpression event(u"^(\\d{3,})  001      V     C        (\\S*) (\\S*) \\2 \\3$"_s);
        static const QRegularExpression fromClip(u"^\\* FROM CLIP NAME: [ -~]*$"_s);
        static const QRegularExpression marker(u"^\\|C:ResolveColor[A-Z][a-z]+ \\|M:[ -~]* \\|D:1$"_s);
        Generator generate(99);
        for (int i = 0; i < sessionCount; ++i) {
            const ShootSession session = generate.session(i);
            const QStringList lines = generateResolveEDL(session).split(u'\n');
            QVERIFY(lines[0].startsWith("TITLE: "_L1));
            QCOMPARE(lines[1], "FCM: NON-DROP FRAME"_L1);
            QCOMPARE(lines[2], QString());
            qsizetype at = 3;
            for (qsizetype m = 0; m < session.markers.size(); ++m) {
                const auto match = event.match(lines[at++]);
                QVERIFY2(match.hasMatch(), qPrintable(lines[at - 1]));
                QCOMPARE(match.captured(1).toInt(), m + 1);
                QCOMPARE(match.captured(2), session.markers[m].timecode);
                const QString &type = session.markers[m].markerType;
                if (type == "inout"_L1 || type == "earmark"_L1)
                    QVERIFY2(fromClip.match(lines[at++]).hasMatch(), qPrintable(lines[at - 1]));
                QVERIFY2(marker.match(lines[at++]).hasMatch(), qPrintable(lines[at - 1]));
                QCOMPARE(lines[at++], QString());
            }
            // The text ends with a line feed, which leaves one empty piece after the split.
            QCOMPARE(at + 1, lines.size());
            QCOMPARE(lines.last(), QString());
        }
    }
};

QTEST_GUILESS_MAIN(ExportPropertiesTest)
#include "ExportPropertiesTest.moc"
