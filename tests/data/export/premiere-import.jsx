// Vorlix Sync - Import markers and apply colours
(function() {
    // Import the XML
    var xmlFile = new File('/tmp/it\'s\\x/vorlix-markers.xml');
    if (xmlFile.exists) {
        var ok = app.project.importFiles([xmlFile.fsName], true);
    }

    // Wait a moment for import to complete, then recolour markers
    $.sleep(1000);

    var colorMap = {"LOG": 6, "EARMARK": 2, "NOTE": 5, "CLIP": 0, "FIELD": 4, "Q": 7, "TOPIC": 6, "SOUNDBITE": 2, "CONFLICT": 1, "INSIGHT": 2, "STORY": 3, "GV": 4, "SHOT": 4};
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
})();