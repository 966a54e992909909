#include "export/PremiereScript.h"

using namespace Qt::StringLiterals;

namespace {

// Keyed by name prefix, not by type; "RETAKE" has no entry on purpose, so retakes keep the colour
// the import gave them.
constexpr QLatin1String colorMapEntries =
    R"("LOG": 6, "EARMARK": 2, "NOTE": 5, "CLIP": 0, "FIELD": 4, "Q": 7, "TOPIC": 6, "SOUNDBITE": 2, "CONFLICT": 1, "INSIGHT": 2, "STORY": 3, "GV": 4, "SHOT": 4)"_L1;

constexpr QLatin1String beforePath = R"(// Vorlix Sync - Import markers and apply colours
(function() {
    // Import the XML
    var xmlFile = new File(')"_L1;

constexpr QLatin1String beforeEntries = R"(');
    if (xmlFile.exists) {
        var ok = app.project.importFiles([xmlFile.fsName], true);
    }

    // Wait a moment for import to complete, then recolour markers
    $.sleep(1000);

    var colorMap = {)"_L1;

constexpr QLatin1String rest = R"(};
    var seq = app.project.activeSequence;
    if (!seq) {
        // Find the most recently added sequence
        for (var i = app.project.rootItem.children.numItems - 1; i >= 0; i--) {
            var item = app.project.rootItem.children[i];
            if (item.type === ProjectItemType.SEQUENCE) {
                app.project.openSequence(item.projectItem ? item.projectItem : item);
                seq = app.project.activeSequence;
                break;
            }
        }
    }
    if (!seq || !seq.markers) return;

    var marker = seq.markers.getFirstMarker();
    while (marker) {
        var name = marker.name;
        var match = name.match(/^\[([A-Z]+)\]\s*/);
        if (match) {
            var prefix = match[1];
            if (colorMap.hasOwnProperty(prefix)) {
                marker.setColorByIndex(colorMap[prefix]);
            }
            // Strip the prefix from the name
            marker.name = name.replace(/^\[([A-Z]+)\]\s*/, '');
        }
        marker = seq.markers.getNextMarker(marker);
    }
})();)"_L1;

// The path as the body of a single-quoted script string: backslash and quote escaped, and every
// control character and line or paragraph separator (a line break ends a string literal) as a
// \uXXXX escape, so any file name the system allows gives a valid script.
QString scriptString(const QString &text)
{
    QString escaped;
    escaped.reserve(text.size() + 8);
    for (QChar c : text) {
        if (c == u'\\' || c == u'\'')
            escaped += u'\\';
        if (c.unicode() < 0x20 || c.unicode() == 0x7f || c.unicode() == 0x2028 || c.unicode() == 0x2029)
            escaped += "\\u"_L1 + QString::number(c.unicode(), 16).rightJustified(4, u'0');
        else
            escaped += c;
    }
    return escaped;
}

} // namespace

QString premiereScript(const QString &xmlPath)
{
    return beforePath + scriptString(xmlPath) + beforeEntries + colorMapEntries + rest;
}
