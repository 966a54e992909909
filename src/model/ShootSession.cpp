#include "model/ShootSession.h"

QString ShootSession::tcRange() const
{
    if (markers.isEmpty())
        return QStringLiteral("--");
    return markers.first().timecode + QStringLiteral(" - ") + markers.last().timecode;
}
