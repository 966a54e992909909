#include "export/MarkerTypes.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct MarkerTypeRow {
    QLatin1String type;
    QLatin1String prefix;
    int colorIndex;
    QLatin1String otioColor;
    QLatin1String resolveColor;
    QLatin1String avidColor;
};

constexpr QLatin1String otioFallback = "BLUE"_L1;
constexpr QLatin1String resolveFallback = "ResolveColorBlue"_L1;
constexpr QLatin1String avidFallback = "blue"_L1;

constexpr MarkerTypeRow markerTypes[] = {
    {"log"_L1, "LOG"_L1, 6, "BLUE"_L1, "ResolveColorBlue"_L1, "blue"_L1},
    {"earmark"_L1, "EARMARK"_L1, 2, "PURPLE"_L1, "ResolveColorPurple"_L1, "magenta"_L1},
    {"note"_L1, "NOTE"_L1, 5, "WHITE"_L1, "ResolveColorWhite"_L1, "white"_L1},
    {"inout"_L1, "CLIP"_L1, 0, "GREEN"_L1, "ResolveColorGreen"_L1, "green"_L1},
    {"fieldnote"_L1, "FIELD"_L1, 4, "YELLOW"_L1, "ResolveColorYellow"_L1, "yellow"_L1},
    {"question"_L1, "Q"_L1, 7, "CYAN"_L1, "ResolveColorCyan"_L1, "cyan"_L1},
    {"topic_shift"_L1, "TOPIC"_L1, 6, "BLUE"_L1, "ResolveColorBlue"_L1, "blue"_L1},
    {"soundbite"_L1, "SOUNDBITE"_L1, 2, "PURPLE"_L1, "ResolveColorPurple"_L1, "magenta"_L1},
    {"conflict"_L1, "CONFLICT"_L1, 1, "RED"_L1, "ResolveColorRed"_L1, "red"_L1},
    {"insight"_L1, "INSIGHT"_L1, 2, "MAGENTA"_L1, "ResolveColorPurple"_L1, "magenta"_L1},
    {"story"_L1, "STORY"_L1, 3, "ORANGE"_L1, "ResolveColorFuchsia"_L1, "yellow"_L1},
    {"visual"_L1, "SHOT"_L1, 4, "YELLOW"_L1, "ResolveColorYellow"_L1, "yellow"_L1},
    // The EDL has no colour of its own for general views.
    {"gv"_L1, "GV"_L1, 4, "YELLOW"_L1, resolveFallback, "yellow"_L1},
    {"retake"_L1, "RETAKE"_L1, 1, "RED"_L1, "ResolveColorRed"_L1, "red"_L1},
};

const MarkerTypeRow *find(QStringView type)
{
    const auto row = std::find_if(std::begin(markerTypes), std::end(markerTypes),
                                  [type](const MarkerTypeRow &r) { return r.type == type; });
    return row == std::end(markerTypes) ? nullptr : row;
}

} // namespace

QString markerTypePrefix(QStringView markerType)
{
    const MarkerTypeRow *row = find(markerType);
    return row ? QString(row->prefix) : markerType.toString().toUpper();
}

int markerTypeColorIndex(QStringView markerType)
{
    const MarkerTypeRow *row = find(markerType);
    return row ? row->colorIndex : 6;
}

QString markerTypeOtioColor(QStringView markerType)
{
    const MarkerTypeRow *row = find(markerType);
    return row ? row->otioColor : otioFallback;
}

QString markerTypeResolveColor(QStringView markerType)
{
    const MarkerTypeRow *row = find(markerType);
    return row ? row->resolveColor : resolveFallback;
}

QString markerTypeAvidColor(QStringView markerType)
{
    const MarkerTypeRow *row = find(markerType);
    return row ? row->avidColor : avidFallback;
}
