#include "support/TestData.h"

#include "model/ClipMatcher.h"

class ClipMatcherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void matchClipsToSession_data() { addCaseRows(QStringLiteral("model/clip-matching.txt")); }

    void matchClipsToSession()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        const QString markers = input.section(QStringLiteral(" | "), 0, 0);
        ShootSession session;
        session.fps = markers.section(QStringLiteral(" @"), 1).toInt();
        for (const QString &timecode : markers.section(QStringLiteral(" @"), 0, 0).split(u' ', Qt::SkipEmptyParts)) {
            ShootMarker marker;
            marker.timecode = timecode;
            session.markers.append(marker);
        }
        QList<MediaClip> clips;
        for (const QString &text : ("earlier 10:00:00:00 1, " + input.section(QStringLiteral(" | "), 1)).split(QStringLiteral(", "), Qt::SkipEmptyParts)) {
            const QStringList fields = text.split(u' ');
            MediaClip clip;
            clip.id = fields.at(0);
            if (fields.at(1) != u"-")
                clip.timecode = fields.at(1);
            clip.duration = fields.at(2).toDouble();
            clips.append(clip);
        }
        session.matchedClips = {clips.takeFirst()};
        QStringList matched;
        for (const MediaClip &clip : ClipMatcher::matchClipsToSession(clips, session).matchedClips)
            matched.append(clip.id);
        QCOMPARE(matched.join(QStringLiteral(", ")), expected);
    }
};

QTEST_GUILESS_MAIN(ClipMatcherTest)
#include "ClipMatcherTest.moc"
