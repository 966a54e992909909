#include "model/ShootMarker.h"

QString ShootMarker::displayLabel() const
{
    if (markerType == QLatin1String("earmark"))
        return QStringLiteral("Earmark");
    if (markerType == QLatin1String("inout"))
        return QStringLiteral("Clip");
    if (markerType == QLatin1String("note"))
        return QStringLiteral("Note");
    return QStringLiteral("Log");
}

Rgb ShootMarker::color() const
{
    if (markerType == QLatin1String("inout"))
        return Palette::green;
    if (markerType == QLatin1String("note"))
        return Palette::standardGrey;
    return Palette::indigo;
}
