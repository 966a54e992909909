#pragma once

#include <QFile>
#include <QTest>
#include <QVariant>
#include <optional>

// Case tables under tests/data: one case a line, "input -> expected"; blank lines and "#" notes
// are skipped. Each case becomes a data row named by its input.
inline void addCaseRows(const QString &table)
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected");
    QFile file(QStringLiteral(VORLIX_TEST_DATA "/") + table);
    QVERIFY2(file.open(QIODevice::ReadOnly | QIODevice::Text), qPrintable(file.fileName()));
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        if (line.trimmed().isEmpty() || line.startsWith(u'#'))
            continue;
        const qsizetype arrow = line.indexOf(QLatin1String(" ->"));
        QVERIFY2(arrow >= 0, qPrintable(QStringLiteral("no \" ->\" in \"%1\"").arg(line)));
        QTest::newRow(qPrintable(line.left(arrow))) << line.left(arrow) << line.mid(arrow + 3).trimmed();
    }
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
