#pragma once

#include "model/DeletedSessionInfo.h"

#include <QList>
#include <QString>

// The settings surfaces' choice tables and derived texts.
namespace SettingsLogic {

template <typename Value>
struct Choice {
    QString label;
    Value value;
};

const QList<Choice<QString>> &themeChoices();
const QList<Choice<QString>> &nleChoices();
const QList<Choice<int>> &frameRateChoices();

// First letters of the first two words of the name (else the e-mail address), upper-cased.
QString initials(const QString &userName, const QString &userEmail);
// "User" for an empty name; any other name, blanks included, as it is.
QString displayName(const QString &userName);
QList<DeletedSessionInfo> newestFirst(QList<DeletedSessionInfo> deleted);

} // namespace SettingsLogic
