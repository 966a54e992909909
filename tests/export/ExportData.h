#pragma once

#include <QFile>
#include <QStringList>

// Golden documents are data files under tests/data/export, exactly the bytes a writer must give.
// Empty when `actual` is the golden file `name` byte for byte; otherwise what is wrong: the file
// cannot be read, or the first line that differs, so a failure names the line instead of dumping
// two documents.
inline QString goldenMismatch(const QString &actual, const QString &name)
{
    QFile file(QStringLiteral(VORLIX_TEST_DATA "/export/") + name);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot read the golden file ") + file.fileName();
    const QByteArray expected = file.readAll();
    if (actual.toUtf8() == expected)
        return {};
    const QStringList a = actual.split(u'\n'), e = QString::fromUtf8(expected).split(u'\n');
    qsizetype line = 0;
    while (line < a.size() && line < e.size() && a[line] == e[line])
        ++line;
    const QString end = QStringLiteral("<end of document>");
    return QStringLiteral("%1, line %2:\n  got      [%3]\n  expected [%4]").arg(name).arg(line + 1).arg(a.value(line, end), e.value(line, end));
}
