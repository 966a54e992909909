#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTest>
#include <QVariant>
#include <optional>

// Inputs, case tables and golden documents are data files under tests/data, read where they stand
// in the source tree. Every reader fails the running test with the file's name when it cannot read.

inline QString testDataPath(const QString &relative)
{
    return QStringLiteral(VORLIX_TEST_DATA "/") + relative;
}

// The file's bytes; empty (and the test marked failed) when it cannot be read.
inline QByteArray readTestData(const QString &relative)
{
    QFile file(testDataPath(relative));
    if (!file.open(QIODevice::ReadOnly)) {
        QTest::qFail(qPrintable(file.fileName() + QStringLiteral(" cannot be read")), __FILE__, __LINE__);
        return {};
    }
    return file.readAll();
}

inline QJsonValue readTestJson(const QString &relative, const QString &key)
{
    return QJsonDocument::fromJson(readTestData(relative))[key];
}

// Text case tables: one case a line, "input -> expected"; blank lines and "#" notes are skipped.
// Each case becomes a data row named by its input.
inline void addCaseRows(const QString &table)
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected");
    for (const QString &line : QString::fromUtf8(readTestData(table)).split(u'\n')) {
        if (line.trimmed().isEmpty() || line.startsWith(u'#'))
            continue;
        const qsizetype arrow = line.indexOf(QLatin1String(" ->"));
        QVERIFY2(arrow >= 0, qPrintable(QStringLiteral("no \" ->\" in \"%1\"").arg(line)));
        QTest::newRow(qPrintable(line.left(arrow))) << line.left(arrow) << line.mid(arrow + 3).trimmed();
    }
}

// JSON case tables: one row, in the column "data", per object of the array `group`, named by its
// "name".
inline void addJsonCases(const QString &file, const QString &group)
{
    QTest::addColumn<QJsonObject>("data");
    const QJsonArray cases = readTestJson(file, group).toArray();
    QVERIFY2(!cases.isEmpty(), qPrintable(file + QStringLiteral(" has no cases in ") + group));
    for (const QJsonValue &data : cases)
        QTest::newRow(qPrintable(data[QStringLiteral("name")].toString())) << data.toObject();
}

// A value as case-table text: "-" when absent, a double to 12 significant digits.
template<typename T>
QString caseText(const std::optional<T> &value)
{
    if constexpr (std::is_floating_point_v<T>)
        return value ? QString::number(*value, 'g', 12) : QStringLiteral("-");
    else
        return value ? QVariant::fromValue(*value).toString() : QStringLiteral("-");
}

// Empty when `actual` is the golden document `relative` byte for byte; otherwise the first line
// that differs, so a failure names the line instead of dumping two documents.
inline QString goldenMismatch(const QString &actual, const QString &relative)
{
    const QByteArray expected = readTestData(relative);
    if (actual.toUtf8() == expected)
        return {};
    const QStringList a = actual.split(u'\n'), e = QString::fromUtf8(expected).split(u'\n');
    qsizetype line = 0;
    while (line < a.size() && line < e.size() && a[line] == e[line])
        ++line;
    const QString end = QStringLiteral("<end of document>");
    return QStringLiteral("%1, line %2:\n  got      [%3]\n  expected [%4]").arg(relative).arg(line + 1).arg(a.value(line, end), e.value(line, end));
}
