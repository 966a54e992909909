#include "model/MediaClip.h"
#include "timecode/ClipMatcher.h"
#include "timecode/NumberText.h"
#include "timecode/Timecode.h"

#include <QTest>
#include <cmath>
#include <limits>

using OptionalDouble = std::optional<double>;
using OptionalInteger = std::optional<qint64>;

class TimecodeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void strictDecimal_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<OptionalDouble>("expected");
        QTest::newRow("integer") << "12" << OptionalDouble(12.0);
        QTest::newRow("ffprobe duration") << "12.345000" << OptionalDouble(12.345);
        QTest::newRow("plus sign") << "+1.5" << OptionalDouble(1.5);
        QTest::newRow("negative") << "-23.4" << OptionalDouble(-23.4);
        QTest::newRow("exponent") << "1e3" << OptionalDouble(1000.0);
        QTest::newRow("leading dot") << ".5" << OptionalDouble(0.5);
        QTest::newRow("empty") << "" << OptionalDouble();
        QTest::newRow("leading space") << " 1" << OptionalDouble();
        QTest::newRow("trailing space") << "1 " << OptionalDouble();
        QTest::newRow("trailing unit") << "-23.4 dB" << OptionalDouble();
        QTest::newRow("comma decimal") << "1,5" << OptionalDouble();
        QTest::newRow("arabic digits") << QString::fromUtf8("\u0661") << OptionalDouble();
    }

    void strictDecimal()
    {
        QFETCH(QString, text);
        QFETCH(OptionalDouble, expected);
        const auto actual = parseStrictDecimal(text);
        QCOMPARE(actual.has_value(), expected.has_value());
        if (expected)
            QCOMPARE(*actual, *expected);
    }

    void strictDecimalIgnoresProcessLocale()
    {
        const QByteArray previous = setlocale(LC_NUMERIC, nullptr);
        if (!setlocale(LC_NUMERIC, "de_DE.UTF-8"))
            QSKIP("no German locale installed");
        QCOMPARE(parseStrictDecimal(u"1.5"), OptionalDouble(1.5));
        QCOMPARE(parseStrictDecimal(u"1,5"), OptionalDouble());
        setlocale(LC_NUMERIC, previous.constData());
    }

    void base10Integer_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<OptionalInteger>("expected");
        QTest::newRow("zero padded") << "05" << OptionalInteger(5);
        QTest::newRow("plus") << "+7" << OptionalInteger(7);
        QTest::newRow("minus") << "-7" << OptionalInteger(-7);
        QTest::newRow("largest") << "9223372036854775807" << OptionalInteger(std::numeric_limits<qint64>::max());
        QTest::newRow("smallest") << "-9223372036854775808" << OptionalInteger(std::numeric_limits<qint64>::min());
        QTest::newRow("overflow") << "9223372036854775808" << OptionalInteger();
        QTest::newRow("decimal point") << "5.0" << OptionalInteger();
        QTest::newRow("empty") << "" << OptionalInteger();
        QTest::newRow("space") << " 5" << OptionalInteger();
        QTest::newRow("drop frame piece") << "00;12" << OptionalInteger();
    }

    void base10Integer()
    {
        QFETCH(QString, text);
        QFETCH(OptionalInteger, expected);
        QCOMPARE(parseBase10Integer(text), expected);
    }

    void conversions_data()
    {
        QTest::addColumn<QString>("tc");
        QTest::addColumn<int>("fps");
        QTest::addColumn<OptionalDouble>("matcherSeconds");
        QTest::addColumn<double>("clipSeconds");
        QTest::addColumn<qint64>("frames");
        QTest::addColumn<QString>("nudged");

        QTest::newRow("25 fps") << "01:00:00:12" << 25 << OptionalDouble(3600.48) << 3600.48 << qint64(90012) << "01:00:00:13";
        QTest::newRow("30 fps: clips stay at 25") << "01:00:00:12" << 30 << OptionalDouble(3600.4) << 3600.48 << qint64(108012) << "01:00:00:13";
        QTest::newRow("three fields") << "01:00:00" << 25 << OptionalDouble(3600.0) << 3600.0 << qint64(90000) << "01:00:00";
        QTest::newRow("drop frame separator") << "01:00:00;12" << 25 << OptionalDouble() << 0.0 << qint64(0) << "01:00:00;12";
        QTest::newRow("empty") << "" << 25 << OptionalDouble() << 0.0 << qint64(0) << "";
        QTest::newRow("empty pieces dropped") << ":01::00:00:12:" << 25 << OptionalDouble(3600.48) << 3600.48 << qint64(90012) << "01:00:00:13";
        QTest::newRow("fractional piece") << "00:00:01.5:00" << 25 << OptionalDouble(1.5) << 1.5 << qint64(0) << "00:00:01.5:00";
        QTest::newRow("five fields ignore the rest") << "01:00:00:12:99" << 25 << OptionalDouble(3600.0) << 3600.0 << qint64(90000) << "01:00:00:12:99";
        QTest::newRow("out of range fields add in") << "00:61:75:30" << 25 << OptionalDouble(61 * 60 + 75 + 1.2) << 61 * 60 + 75 + 1.2 << qint64((61 * 60 + 75) * 25 + 30) << "01:02:16:06";
        QTest::newRow("unpadded") << "1:2:3:4" << 25 << OptionalDouble(3723.16) << 3723.16 << qint64(3723 * 25 + 4) << "01:02:03:05";
        QTest::newRow("garbage piece dropped") << "10:xx:00:00:00" << 25 << OptionalDouble(36000.0) << 36000.0 << qint64(900000) << "10:00:00:01"; // four numbers survive
        QTest::newRow("carry seconds and minutes") << "00:00:59:24" << 25 << OptionalDouble(59.96) << 59.96 << qint64(1499) << "00:01:00:00";
        QTest::newRow("absurd hours saturate") << "99999999999999999:00:00:00" << 25 << OptionalDouble(99999999999999999.0 * 3600) << 99999999999999999.0 * 3600 << std::numeric_limits<qint64>::max() << "99999999999999999:00:00:01";
        QTest::newRow("carry into hour 24") << "23:59:59:29" << 30 << OptionalDouble(86399 + 29.0 / 30) << 86399 + 29.0 / 25 << qint64(86399 * 30 + 29) << "24:00:00:00";
    }

    void conversions()
    {
        QFETCH(QString, tc);
        QFETCH(int, fps);
        QFETCH(OptionalDouble, matcherSeconds);
        QFETCH(double, clipSeconds);
        QFETCH(qint64, frames);
        QFETCH(QString, nudged);

        const auto seconds = ClipMatcher::tcToSeconds(tc, fps);
        QCOMPARE(seconds.has_value(), matcherSeconds.has_value());
        if (matcherSeconds)
            QVERIFY(qFuzzyCompare(*seconds, *matcherSeconds));
        QVERIFY(qFuzzyCompare(1.0 + MediaClip::tcToSeconds(tc), 1.0 + clipSeconds));
        QCOMPARE(tcToFrames(tc, fps), frames);
        QCOMPARE(ClipMatcher::nudgeTC(tc, 1, fps), nudged);
    }

    void nudgeKeepsUnparsedTextExactly()
    {
        // Not four integer fields: the text itself comes back, not a re-formatted one.
        QCOMPARE(ClipMatcher::nudgeTC(QStringLiteral("1:2:3"), 1, 25), QStringLiteral("1:2:3"));
        QCOMPARE(ClipMatcher::nudgeTC(QStringLiteral(" 01:00:00:00"), 1, 25), QStringLiteral(" 01:00:00:00"));
    }

    void secondsToTC_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<int>("fps");
        QTest::addColumn<QString>("expected");
        QTest::newRow("example") << 3725.5 << 25 << "01:02:05:12";
        QTest::newRow("zero") << 0.0 << 25 << "00:00:00:00";
        QTest::newRow("frame truncated") << 10.999 << 30 << "00:00:10:29";
        QTest::newRow("past a day") << 90061.0 << 25 << "25:01:01:00";
    }

    void secondsToTC()
    {
        QFETCH(double, seconds);
        QFETCH(int, fps);
        QFETCH(QString, expected);
        QCOMPARE(::secondsToTC(seconds, fps), expected);
    }

    void integerFieldsToSeconds_data()
    {
        QTest::addColumn<QString>("tc");
        QTest::addColumn<double>("expected");
        QTest::newRow("four fields") << "01:00:00:12" << 3600.48;
        QTest::newRow("three fields") << "01:00:00" << 3600.0;
        QTest::newRow("decimal piece dropped") << "01:00:00.5:12" << 3612.0;
        QTest::newRow("empty") << "" << 0.0;
    }

    void integerFieldsToSeconds()
    {
        QFETCH(QString, tc);
        QFETCH(double, expected);
        QVERIFY(qFuzzyCompare(1.0 + Timecode::integerFieldsToSeconds(tc, 25), 1.0 + expected));
    }
};

QTEST_GUILESS_MAIN(TimecodeTest)
#include "TimecodeTest.moc"
