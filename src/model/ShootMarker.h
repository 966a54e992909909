#pragma once

#include "model/Rgb.h"

#include <QDateTime>
#include <QString>
#include <optional>

// One marker logged live during a shoot. Values, fixed once made.
struct ShootMarker {
    QString id;
    QString markerType;
    QString timecode;
    std::optional<QString> timecodeOut;
    std::optional<QString> summary;
    std::optional<QString> quote;
    std::optional<QString> raw;
    std::optional<QString> manualNote;
    QDateTime createdAt;

    // The type as the screens name it; only three types have a label of their own.
    QString displayLabel() const;
    Rgb color() const;

    friend bool operator==(const ShootMarker &, const ShootMarker &) = default;
};
