#pragma once

#include <QString>
#include <QStringView>

// How each exporter shows a marker type. The types are an open set of lower-case words; the 14
// known ones have a row, every other type (the empty one included) gets the fall-backs below.
// Types are matched exactly, case included.

// The bracketed xmeml name prefix; an unknown type in upper case.
QString markerTypePrefix(QStringView markerType);
// The Premiere Pro marker colour index; 6 for an unknown type.
int markerTypeColorIndex(QStringView markerType);
// The OpenTimelineIO marker colour; "BLUE" for an unknown type.
QString markerTypeOtioColor(QStringView markerType);
// The DaVinci Resolve EDL marker colour; "ResolveColorBlue" for an unknown type.
QString markerTypeResolveColor(QStringView markerType);
// The Media Composer marker colour, one of its eight; "blue" for an unknown type. Purple and
// orange have no Avid colour: they become magenta and yellow.
QString markerTypeAvidColor(QStringView markerType);
