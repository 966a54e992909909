#include "support/TestData.h"

#include "model/ClipMatcher.h"
#include "model/MediaClip.h"
#include "time/NumberText.h"
#include "time/Timecode.h"

#include <clocale>

class TimecodeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Where a comma-decimal locale is installed, every rule below must ignore it.
        setlocale(LC_NUMERIC, "de_DE.UTF-8");
    }

    void numberRules_data() { addCaseRows(QStringLiteral("time/number-rules.txt")); }

    void numberRules()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        const std::optional<double> decimal = parseStrictDecimal(input);
        QCOMPARE(caseText(decimal) + ", " + caseText(parseBase10Integer(input)) + ", " + caseText(decimal ? wholeNumber(*decimal) : std::nullopt),
                 expected);
    }

    void conversions_data() { addCaseRows(QStringLiteral("time/conversions.txt")); }

    void conversions()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        const QString tc = input.section(QStringLiteral(" @"), 0, -2);
        const int fps = input.section(QStringLiteral(" @"), -1).toInt();
        const QStringList results{caseText(ClipMatcher::tcToSeconds(tc, fps)), caseText(std::optional(MediaClip::tcToSeconds(tc))),
                                  caseText(std::optional(Timecode::integerFieldsToSeconds(tc, fps))), QString::number(tcToFrames(tc, fps)),
                                  ClipMatcher::nudgeTC(tc, 1, fps)};
        QCOMPARE(results.join(u", "), expected);
    }

    void secondsToTC()
    {
        QCOMPARE(::secondsToTC(3725.5, 25), QStringLiteral("01:02:05:12"));
        QCOMPARE(::secondsToTC(10.999, 30), QStringLiteral("00:00:10:29")); // frames truncated
        QCOMPARE(::secondsToTC(90061, 25), QStringLiteral("25:01:01:00")); // hours not wrapped
    }
};

QTEST_GUILESS_MAIN(TimecodeTest)
#include "TimecodeTest.moc"
