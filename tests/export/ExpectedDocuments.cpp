#include "ExpectedDocuments.h"

// Expected documents, written out line by line from the layouts of each format, for the
// sessions built in ExportDocumentsTest.cpp.
namespace Expected {

const QString xmlNoClips = QStringLiteral(R"~(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE xmeml>
<xmeml version="4">
  <sequence>
    <name>Caf &amp; Co &quot;&lt;x&gt;&quot; </name>
    <duration>900625</duration>
    <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
    <timecode>
      <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
      <string>10:00:05:00</string>
      <frame>-250</frame>
      <displayformat>NDF</displayformat>
    </timecode>
    <media>
      <video>
        <format>
          <samplecharacteristics>
            <width>1920</width>
            <height>1080</height>
            <pixelaspectratio>square</pixelaspectratio>
            <fielddominance>none</fielddominance>
          </samplecharacteristics>
        </format>
        <track/>
      </video>
      <audio>
        <format>
          <samplecharacteristics>
            <samplerate>48000</samplerate>
            <depth>16</depth>
            <samplesize>16</samplesize>
          </samplecharacteristics>
        </format>
        <track/>
      </audio>
    </media>
          <marker>
            <comment>It&apos;s \ fine</comment>
            <name>[SHOT] Wide of crowd</name>
            <in>900375</in>
            <out>-1</out>
            <type>Comment</type>
            <color>4</color>
          </marker>
          <marker>
            <comment></comment>
            <name>[B-ROLL] tapetwo</name>
            <in>900260</in>
            <out>900300</out>
            <type>Comment</type>
            <color>6</color>
          </marker>
          <marker>
            <comment></comment>
            <name>[LOG] </name>
            <in>250</in>
            <out>-1</out>
            <type>Comment</type>
            <color>6</color>
          </marker>
  </sequence>
</xmeml>)~");

const QString xmlEmpty = QStringLiteral(R"~(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE xmeml>
<xmeml version="4">
  <sequence>
    <name></name>
    <duration>500</duration>
    <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
    <timecode>
      <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
      <string>00:00:00:00</string>
      <frame>-250</frame>
      <displayformat>NDF</displayformat>
    </timecode>
    <media>
      <video>
        <format>
          <samplecharacteristics>
            <width>1920</width>
            <height>1080</height>
            <pixelaspectratio>square</pixelaspectratio>
            <fielddominance>none</fielddominance>
          </samplecharacteristics>
        </format>
        <track/>
      </video>
      <audio>
        <format>
          <samplecharacteristics>
            <samplerate>48000</samplerate>
            <depth>16</depth>
            <samplesize>16</samplesize>
          </samplecharacteristics>
        </format>
        <track/>
      </audio>
    </media>
  </sequence>
</xmeml>)~");

const QString xmlClips = QStringLiteral(R"~(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE xmeml>
<xmeml version="4">
  <sequence>
    <name>Clips</name>
    <duration>375</duration>
    <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
    <timecode>
      <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
      <string>10:00:00:00</string>
      <frame>900000</frame>
      <displayformat>NDF</displayformat>
    </timecode>
    <format>
      <samplecharacteristics>
        <width>1920</width>
        <height>1080</height>
      </samplecharacteristics>
    </format>
    <media>
      <video>
        <track>
    <clipitem id="clipitem-v1">
      <name>A001.mov</name>
      <duration>100</duration>
      <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
      <in>0</in>
      <out>100</out>
      <start>0</start>
      <end>100</end>
      <file id="file-1">
        <name>A001.mov</name>
        <pathurl>file://localhost/footage/A001.mov</pathurl>
        <duration>100</duration>
        <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
        <timecode>
          <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
          <string>10:00:00:00</string>
          <frame>900000</frame>
          <displayformat>NDF</displayformat>
        </timecode>
        <media>
          <video>
            <samplecharacteristics>
              <width>1920</width>
              <height>1080</height>
            </samplecharacteristics>
          </video>
          <audio>
            <channelcount>2</channelcount>
          </audio>
        </media>
      </file>
  <marker>
    <comment>ha</comment>
    <name>[SOUNDBITE] Laugh</name>
    <in>25</in>
    <out>-1</out>
    <type>Comment</type>
    <color>2</color>
  </marker>
      <link>
        <linkclipref>clipitem-v1</linkclipref>
        <mediatype>video</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a1-1</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a1-2</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>2</trackindex>
        <clipindex>1</clipindex>
      </link>
    </clipitem>
    <clipitem id="clipitem-v2">
      <name>B&amp;&apos;.MOV</name>
      <duration>125</duration>
      <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
      <in>0</in>
      <out>125</out>
      <start>250</start>
      <end>375</end>
      <file id="file-2">
        <name>B&amp;&apos;.MOV</name>
        <pathurl>file://localhost/Volumes/Card%20A/B&amp;&apos;.MOV</pathurl>
        <duration>125</duration>
        <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
        <timecode>
          <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
          <string>10:00:10:00</string>
          <frame>900250</frame>
          <displayformat>NDF</displayformat>
        </timecode>
        <media>
          <video>
            <samplecharacteristics>
              <width>3840</width>
              <height>2160</height>
            </samplecharacteristics>
          </video>
          <audio>
            <channelcount>2</channelcount>
          </audio>
        </media>
      </file>
  <marker>
    <comment></comment>
    <name>[Q] Why?</name>
    <in>5</in>
    <out>25</out>
    <type>Comment</type>
    <color>7</color>
  </marker>
      <link>
        <linkclipref>clipitem-v2</linkclipref>
        <mediatype>video</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a2-1</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a2-2</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>2</trackindex>
        <clipindex>1</clipindex>
      </link>
    </clipitem>
        </track>
      </video>
      <audio>
        <track>
    <clipitem id="clipitem-a1-1">
      <name>A001.mov</name>
      <duration>100</duration>
      <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
      <in>0</in>
      <out>100</out>
      <start>0</start>
      <end>100</end>
      <file id="file-1"/>
      <sourcetrack>
        <mediatype>audio</mediatype>
        <trackindex>2</trackindex>
      </sourcetrack>
      <link>
        <linkclipref>clipitem-v1</linkclipref>
        <mediatype>video</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a1-1</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a1-2</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>2</trackindex>
        <clipindex>1</clipindex>
      </link>
    </clipitem>
    <clipitem id="clipitem-a2-1">
      <name>B&amp;&apos;.MOV</name>
      <duration>125</duration>
      <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
      <in>0</in>
      <out>125</out>
      <start>250</start>
      <end>375</end>
      <file id="file-2"/>
      <sourcetrack>
        <mediatype>audio</mediatype>
        <trackindex>2</trackindex>
      </sourcetrack>
      <link>
        <linkclipref>clipitem-v2</linkclipref>
        <mediatype>video</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a2-1</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a2-2</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>2</trackindex>
        <clipindex>1</clipindex>
      </link>
    </clipitem>
        </track>
        <track>
    <clipitem id="clipitem-a1-2">
      <name>A001.mov</name>
      <duration>100</duration>
      <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
      <in>0</in>
      <out>100</out>
      <start>0</start>
      <end>100</end>
      <file id="file-1"/>
      <sourcetrack>
        <mediatype>audio</mediatype>
        <trackindex>3</trackindex>
      </sourcetrack>
      <link>
        <linkclipref>clipitem-v1</linkclipref>
        <mediatype>video</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a1-1</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a1-2</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>2</trackindex>
        <clipindex>1</clipindex>
      </link>
    </clipitem>
    <clipitem id="clipitem-a2-2">
      <name>B&amp;&apos;.MOV</name>
      <duration>125</duration>
      <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
      <in>0</in>
      <out>125</out>
      <start>250</start>
      <end>375</end>
      <file id="file-2"/>
      <sourcetrack>
        <mediatype>audio</mediatype>
        <trackindex>3</trackindex>
      </sourcetrack>
      <link>
        <linkclipref>clipitem-v2</linkclipref>
        <mediatype>video</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a2-1</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>1</trackindex>
        <clipindex>1</clipindex>
      </link>
      <link>
        <linkclipref>clipitem-a2-2</linkclipref>
        <mediatype>audio</mediatype>
        <trackindex>2</trackindex>
        <clipindex>1</clipindex>
      </link>
    </clipitem>
        </track>
      </audio>
    </media>
  </sequence>
</xmeml>)~");

const QString selects = QStringLiteral(R"~(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE xmeml>
<xmeml version="4">
  <sequence>
    <name>Day 1 - Selects</name>
    <duration>300</duration>
    <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
    <timecode>
      <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
      <string>01:00:00:00</string>
      <frame>90000</frame>
      <displayformat>NDF</displayformat>
    </timecode>
    <media>
      <video>
        <track>
        <clipitem id="clipitem-v1">
          <name>Select [Grade B]</name>
          <duration>750</duration>
          <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
          <in>250</in>
          <out>300</out>
          <start>0</start>
          <end>50</end>
          <file id="file-1">
            <name>C2.mov</name>
            <pathurl>file://localhost/f/C2.mov</pathurl>
            <duration>750</duration>
            <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
            <timecode>
              <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
              <string>11:00:00:00</string>
              <frame>990000</frame>
              <displayformat>NDF</displayformat>
            </timecode>
            <media>
              <video>
                <samplecharacteristics>
                  <width>1920</width>
                  <height>1080</height>
                </samplecharacteristics>
              </video>
              <audio>
                <channelcount>2</channelcount>
              </audio>
            </media>
          </file>
          <link>
            <linkclipref>clipitem-v1</linkclipref>
            <mediatype>video</mediatype>
            <trackindex>1</trackindex>
            <clipindex>1</clipindex>
          </link>
          <link>
            <linkclipref>clipitem-a1</linkclipref>
            <mediatype>audio</mediatype>
            <trackindex>1</trackindex>
            <clipindex>1</clipindex>
          </link>
        </clipitem>
        <clipitem id="clipitem-v3">
          <name>Laughs at the joke [Grade A]</name>
          <duration>1500</duration>
          <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
          <in>100</in>
          <out>350</out>
          <start>50</start>
          <end>300</end>
          <file id="file-3">
            <name>C1.mov</name>
            <pathurl>file://localhost/f/C1.mov</pathurl>
            <duration>1500</duration>
            <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
            <timecode>
              <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
              <string>10:00:00:00</string>
              <frame>900000</frame>
              <displayformat>NDF</displayformat>
            </timecode>
            <media>
              <video>
                <samplecharacteristics>
                  <width>1280</width>
                  <height>720</height>
                </samplecharacteristics>
              </video>
              <audio>
                <channelcount>2</channelcount>
              </audio>
            </media>
          </file>
          <link>
            <linkclipref>clipitem-v3</linkclipref>
            <mediatype>video</mediatype>
            <trackindex>1</trackindex>
            <clipindex>1</clipindex>
          </link>
          <link>
            <linkclipref>clipitem-a3</linkclipref>
            <mediatype>audio</mediatype>
            <trackindex>1</trackindex>
            <clipindex>1</clipindex>
          </link>
        </clipitem>
        </track>
      </video>
      <audio>
        <track>
        <clipitem id="clipitem-a1">
          <name>Select [Grade B]</name>
          <duration>750</duration>
          <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
          <in>250</in>
          <out>300</out>
          <start>0</start>
          <end>50</end>
          <file id="file-1"/>
          <link>
            <linkclipref>clipitem-v1</linkclipref>
            <mediatype>video</mediatype>
            <trackindex>1</trackindex>
            <clipindex>1</clipindex>
          </link>
          <link>
            <linkclipref>clipitem-a1</linkclipref>
            <mediatype>audio</mediatype>
            <trackindex>1</trackindex>
            <clipindex>1</clipindex>
          </link>
        </clipitem>
        <clipitem id="clipitem-a3">
          <name>Laughs at the joke [Grade A]</name>
          <duration>1500</duration>
          <rate><timebase>25</timebase><ntsc>FALSE</ntsc></rate>
          <in>100</in>
          <out>350</out>
          <start>50</start>
          <end>300</end>
          <file id="file-3"/>
          <link>
            <linkclipref>clipitem-v3</linkclipref>
            <mediatype>video</mediatype>
            <trackindex>1</trackindex>
            <clipindex>1</clipindex>
          </link>
          <link>
            <linkclipref>clipitem-a3</linkclipref>
            <mediatype>audio</mediatype>
            <trackindex>1</trackindex>
            <clipindex>1</clipindex>
          </link>
        </clipitem>
        </track>
        <track/>
      </audio>
    </media>
  </sequence>
</xmeml>)~");

const QString otioEmpty = QStringLiteral(R"~({
    "OTIO_SCHEMA": "Timeline.1",
    "name": "Say 'hi' \\ there",
    "metadata": {"vorlix": true},
    "global_start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 0, "rate": 25.0},
    "tracks": {
        "OTIO_SCHEMA": "Stack.1",
        "name": "tracks",
        "children": [
            {
                "OTIO_SCHEMA": "Track.1",
                "name": "V1",
                "kind": "Video",
                "metadata": {},
                "effects": [],
                "markers": [],
                "source_range": null,
                "children": [{
    "OTIO_SCHEMA": "Gap.1",
    "name": "",
    "metadata": {},
    "effects": [],
    "markers": [],
    "source_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 0, "rate": 25.0}, "duration": {"OTIO_SCHEMA": "RationalTime.1", "value": 250, "rate": 25.0}}
}]
            }
        ],
        "effects": [],
        "markers": [],
        "source_range": null
    }
})~");

const QString otioGap = QStringLiteral(R"~({
    "OTIO_SCHEMA": "Timeline.1",
    "name": "Gap",
    "metadata": {"vorlix": true},
    "global_start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 0, "rate": 25.0},
    "tracks": {
        "OTIO_SCHEMA": "Stack.1",
        "name": "tracks",
        "children": [
            {
                "OTIO_SCHEMA": "Track.1",
                "name": "V1",
                "kind": "Video",
                "metadata": {},
                "effects": [],
                "markers": [],
                "source_range": null,
                "children": [{
    "OTIO_SCHEMA": "Gap.1",
    "name": "",
    "metadata": {},
    "effects": [],
    "markers": [{
    "OTIO_SCHEMA": "Marker.2",
    "name": "He said 'go'",
    "color": "MAGENTA",
    "metadata": {"note": "q\\"},
    "marked_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 200, "rate": 25.0}, "duration": {"OTIO_SCHEMA": "RationalTime.1", "value": 1, "rate": 25.0}}
},
{
    "OTIO_SCHEMA": "Marker.2",
    "name": "",
    "color": "BLUE",
    "metadata": {"note": ""},
    "marked_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 0, "rate": 25.0}, "duration": {"OTIO_SCHEMA": "RationalTime.1", "value": 1, "rate": 25.0}}
}],
    "source_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 0, "rate": 25.0}, "duration": {"OTIO_SCHEMA": "RationalTime.1", "value": 450, "rate": 25.0}}
}]
            }
        ],
        "effects": [],
        "markers": [],
        "source_range": null
    }
})~");

const QString otioClips = QStringLiteral(R"~({
    "OTIO_SCHEMA": "Timeline.1",
    "name": "Clips",
    "metadata": {"vorlix": true},
    "global_start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 0, "rate": 25.0},
    "tracks": {
        "OTIO_SCHEMA": "Stack.1",
        "name": "tracks",
        "children": [
            {
                "OTIO_SCHEMA": "Track.1",
                "name": "V1",
                "kind": "Video",
                "metadata": {},
                "effects": [],
                "markers": [],
                "source_range": null,
                "children": [{
    "OTIO_SCHEMA": "Clip.1",
    "name": "X \"1\".mov",
    "metadata": {},
    "effects": [],
    "markers": [{
    "OTIO_SCHEMA": "Marker.2",
    "name": "Intro",
    "color": "ORANGE",
    "metadata": {"note": ""},
    "marked_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 50, "rate": 50.0}, "duration": {"OTIO_SCHEMA": "RationalTime.1", "value": 1, "rate": 50.0}}
}],
    "media_reference": {
        "OTIO_SCHEMA": "ExternalReference.1",
        "target_url": "file:///a/X%20%221%22.mov",
        "available_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 1800000, "rate": 50.0}, "duration": {"OTIO_SCHEMA": "RationalTime.1", "value": 100, "rate": 50.0}},
        "metadata": {}
    },
    "source_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 1800000, "rate": 50.0}, "duration": {"OTIO_SCHEMA": "RationalTime.1", "value": 100, "rate": 50.0}}
},
{
    "OTIO_SCHEMA": "Clip.1",
    "name": "Y.mov",
    "metadata": {},
    "effects": [],
    "markers": [{
    "OTIO_SCHEMA": "Marker.2",
    "name": "",
    "color": "RED",
    "metadata": {"note": "x'y"},
    "marked_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 5, "rate": 25.0}, "duration": {"OTIO_SCHEMA": "RationalTime.1", "value": 1, "rate": 25.0}}
}],
    "media_reference": {
        "OTIO_SCHEMA": "ExternalReference.1",
        "target_url": "file:///c/Y.mov",
        "available_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 945000, "rate": 25.0}, "duration": {"OTIO_SCHEMA": "RationalTime.1", "value": 25, "rate": 25.0}},
        "metadata": {}
    },
    "source_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": {"OTIO_SCHEMA": "RationalTime.1", "value": 945000, "rate": 25.0}, "duration": {"OTIO_SCHEMA": "RationalTime.1", "value": 25, "rate": 25.0}}
}]
            }
        ],
        "effects": [],
        "markers": [],
        "source_range": null
    }
})~");

const QString script = QStringLiteral(R"~(// Vorlix Sync - Import markers and apply colours
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
})();)~");

const QString instructions = QStringLiteral(R"~(In DaVinci Resolve:

1. Right-click in the Media Pool
2. Timelines > Import > AAF, EDL, XML, OTIO...
3. Select timeline.otio
4. UNTICK 'Automatically import source clips into media pool'
5. Click OK

Timeline with markers will appear. Import your footage separately.)~");

} // namespace Expected
