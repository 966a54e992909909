#pragma once

#include <QStringView>

// `text` without the spaces and tabs at both ends; line breaks and other white space stay.
// The rule of the login address check and of the session screen's rename.
inline QStringView trimSpacesAndTabs(QStringView text)
{
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text.at(begin)))
        ++begin;
    while (end > begin && isBlank(text.at(end - 1)))
        --end;
    return text.mid(begin, end - begin);
}
