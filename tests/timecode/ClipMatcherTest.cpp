#include "timecode/ClipMatcher.h"

#include <QTest>

namespace {

ShootMarker marker(const QString &timecode)
{
    ShootMarker m;
    m.id = timecode;
    m.markerType = QStringLiteral("log");
    m.timecode = timecode;
    return m;
}

MediaClip clip(const QString &id, std::optional<QString> timecode, double duration)
{
    MediaClip c;
    c.id = id;
    c.path = QStringLiteral("/footage/") + id + QStringLiteral(".mov");
    c.filename = id + QStringLiteral(".mov");
    c.timecode = std::move(timecode);
    c.duration = duration;
    return c;
}

ShootSession session(const QStringList &timecodes, int fps = 25)
{
    ShootSession s;
    s.id = s.shareToken = QStringLiteral("token");
    s.title = QStringLiteral("Shoot session");
    s.fps = fps;
    for (const QString &tc : timecodes)
        s.markers.append(marker(tc));
    return s;
}

QStringList ids(const QList<MediaClip> &clips)
{
    QStringList result;
    for (const MediaClip &c : clips)
        result.append(c.id);
    return result;
}

} // namespace

class ClipMatcherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void boundaries_data()
    {
        QTest::addColumn<QString>("start");
        QTest::addColumn<double>("duration");
        QTest::addColumn<bool>("matches");
        // Markers at 10:00:00:00 and 10:30:00:00: the span is 09:59:30 to 10:30:30.
        QTest::newRow("ends after the span opens") << "09:59:00:00" << 31.0 << true;
        QTest::newRow("ends exactly as the span opens") << "09:59:00:00" << 30.0 << true;
        QTest::newRow("ends before the span opens") << "09:59:00:00" << 29.0 << false;
        QTest::newRow("starts as the span closes") << "10:30:30:00" << 5.0 << true;
        QTest::newRow("starts one frame late") << "10:30:30:01" << 5.0 << false;
        QTest::newRow("inside") << "10:10:00:00" << 1.0 << true;
        QTest::newRow("covers the span") << "09:00:00:00" << 7200.0 << true;
        QTest::newRow("unparsable counts as midnight") << "garbage" << 100.0 << false;
    }

    void boundaries()
    {
        QFETCH(QString, start);
        QFETCH(double, duration);
        QFETCH(bool, matches);
        const ShootSession result = ClipMatcher::matchClipsToSession({clip("a", start, duration)},
                                                                     session({"10:30:00:00", "10:00:00:00"}));
        QCOMPARE(result.matchedClips.size(), matches ? 1 : 0);
    }

    void unparsableClipTimecodeMatchesNearMidnight()
    {
        const ShootSession result = ClipMatcher::matchClipsToSession({clip("a", QStringLiteral("??"), 1.0)},
                                                                     session({"00:00:20:00"}));
        QCOMPARE(ids(result.matchedClips), QStringList{"a"});
    }

    void markerFramesUseTheSessionRate()
    {
        // 10:00:00:50 is 10:00:02 at 25 fps but 10:00:01 at 50 fps; the clip ends at 09:59:31.5.
        const QList<MediaClip> clips{clip("a", QStringLiteral("09:59:00:00"), 31.5)};
        QCOMPARE(ClipMatcher::matchClipsToSession(clips, session({"10:00:00:50"}, 25)).matchedClips.size(), 0);
        QCOMPARE(ClipMatcher::matchClipsToSession(clips, session({"10:00:00:50"}, 50)).matchedClips.size(), 1);
    }

    void unchangedWhenNothingToDecide_data()
    {
        QTest::addColumn<QStringList>("markerTimecodes");
        QTest::addColumn<bool>("withClips");
        QTest::newRow("no markers") << QStringList() << true;
        QTest::newRow("no clips") << QStringList{"10:00:00:00"} << false;
        QTest::newRow("only unparsable markers") << QStringList{"", "10;00;00;00", "soon"} << true;
    }

    void unchangedWhenNothingToDecide()
    {
        QFETCH(QStringList, markerTimecodes);
        QFETCH(bool, withClips);
        ShootSession s = session(markerTimecodes);
        s.matchedClips = {clip("earlier", QStringLiteral("10:00:00:00"), 1.0)};
        QList<MediaClip> clips;
        if (withClips)
            clips.append(clip("new", QStringLiteral("10:00:00:00"), 1.0));
        QCOMPARE(ids(ClipMatcher::matchClipsToSession(clips, s).matchedClips), QStringList{"earlier"});
    }

    void replacesEarlierMatchesWithNone()
    {
        ShootSession s = session({"10:00:00:00"});
        s.matchedClips = {clip("earlier", QStringLiteral("10:00:00:00"), 1.0)};
        const auto result = ClipMatcher::matchClipsToSession({clip("far", QStringLiteral("20:00:00:00"), 1.0)}, s);
        QVERIFY(result.matchedClips.isEmpty());
    }

    void ordersByStartKeepingScanOrderForTies()
    {
        const QList<MediaClip> clips{
            clip("late", QStringLiteral("10:05:00:00"), 10.0),
            clip("no-tc", std::nullopt, 1e9),
            clip("tie-1", QStringLiteral("10:01:00:00"), 10.0),
            clip("early", QStringLiteral("10:00:00:00"), 10.0),
            clip("tie-2", QStringLiteral("10:01:00:00"), 5.0),
        };
        const auto result = ClipMatcher::matchClipsToSession(clips, session({"10:00:00:00", "10:06:00:00"}));
        QCOMPARE(ids(result.matchedClips), (QStringList{"early", "tie-1", "tie-2", "late"}));
    }
};

QTEST_GUILESS_MAIN(ClipMatcherTest)
#include "ClipMatcherTest.moc"
