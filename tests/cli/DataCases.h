#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

// Table rows kept as JSON under tests/data: one row, in the column "data", per case of `group`
// in the file `name`, named by the case's "name".
inline void addDataCases(const QString &name, QLatin1StringView group)
{
    QTest::addColumn<QJsonObject>("data");
    QFile file(QStringLiteral(VORLIX_TEST_DATA "/") + name);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName() + QStringLiteral(" cannot be read")));
    const QJsonArray cases = QJsonDocument::fromJson(file.readAll())[group].toArray();
    QVERIFY2(!cases.isEmpty(), "the data file has no cases of this group");
    for (const QJsonValue &data : cases)
        QTest::newRow(qPrintable(data["name"].toString())) << data.toObject();
}
