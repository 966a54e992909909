#include "export/XmemlText.h"

#include "export/TextCleaning.h"

using namespace Qt::StringLiterals;

XmemlText::XmemlText(qsizetype capacity, int fps)
    : m_rate("<rate><timebase>"_L1 + QString::number(fps) + "</timebase><ntsc>FALSE</ntsc></rate>"_L1)
{
    m_text.reserve(capacity);
}

QLatin1String XmemlText::spaces(int count)
{
    static constexpr QLatin1String blank("                                ");
    return blank.left(count);
}

QString XmemlText::pathURL(const QString &path)
{
    // "&" and "'" are legal in a URL path but not in XML text, so the URL is escaped once more.
    return "file://localhost"_L1 + xmlEscaped(percentEncodedPath(path));
}

void XmemlText::sequenceHeader(const QString &name, qint64 duration, const QString &timecode, qint64 frame)
{
    m_text += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"_L1;
    line(0, "<!DOCTYPE xmeml>"_L1);
    line(0, "<xmeml version=\"4\">"_L1);
    line(2, "<sequence>"_L1);
    line(4, "<name>"_L1, name, "</name>"_L1);
    line(4, "<duration>"_L1, number(duration), "</duration>"_L1);
    line(4, m_rate);
    timecodeElement(4, timecode, frame);
}

void XmemlText::sequenceEnd()
{
    line(4, "</media>"_L1);
    line(2, "</sequence>"_L1);
    line(0, "</xmeml>"_L1);
}

void XmemlText::timecodeElement(int indent, const QString &timecode, qint64 frame)
{
    line(indent, "<timecode>"_L1);
    line(indent + 2, m_rate);
    line(indent + 2, "<string>"_L1, safeXML(timecode), "</string>"_L1);
    line(indent + 2, "<frame>"_L1, number(frame), "</frame>"_L1);
    line(indent + 2, "<displayformat>NDF</displayformat>"_L1);
    line(indent, "</timecode>"_L1);
}

void XmemlText::clipItemOpening(int indent, const QString &id, const QString &name, qint64 duration, qint64 in,
                                qint64 out, qint64 start, qint64 end)
{
    line(indent, "<clipitem id=\""_L1, id, "\">"_L1);
    line(indent + 2, "<name>"_L1, name, "</name>"_L1);
    line(indent + 2, "<duration>"_L1, number(duration), "</duration>"_L1);
    line(indent + 2, m_rate);
    line(indent + 2, "<in>"_L1, number(in), "</in>"_L1);
    line(indent + 2, "<out>"_L1, number(out), "</out>"_L1);
    line(indent + 2, "<start>"_L1, number(start), "</start>"_L1);
    line(indent + 2, "<end>"_L1, number(end), "</end>"_L1);
}

void XmemlText::fileElement(int indent, const QString &fileId, const QString &name, const ClipSpan &span)
{
    const QString frames = number(span.frames);
    line(indent, "<file id=\""_L1, fileId, "\">"_L1);
    line(indent + 2, "<name>"_L1, name, "</name>"_L1);
    line(indent + 2, "<pathurl>"_L1, pathURL(span.clip->path), "</pathurl>"_L1);
    line(indent + 2, "<duration>"_L1, frames, "</duration>"_L1);
    line(indent + 2, m_rate);
    timecodeElement(indent + 2, span.timecode, span.start);
    line(indent + 2, "<media>"_L1);
    line(indent + 4, "<video>"_L1);
    line(indent + 6, "<samplecharacteristics>"_L1);
    line(indent + 8, "<width>"_L1, number(span.clip->width.value_or(1920)), "</width>"_L1);
    line(indent + 8, "<height>"_L1, number(span.clip->height.value_or(1080)), "</height>"_L1);
    line(indent + 6, "</samplecharacteristics>"_L1);
    line(indent + 4, "</video>"_L1);
    line(indent + 4, "<audio>"_L1);
    line(indent + 6, "<channelcount>2</channelcount>"_L1);
    line(indent + 4, "</audio>"_L1);
    line(indent + 2, "</media>"_L1);
    line(indent, "</file>"_L1);
}

void XmemlText::link(int indent, const QString &clipRef, QLatin1String mediaType, int trackIndex)
{
    line(indent, "<link>"_L1);
    line(indent + 2, "<linkclipref>"_L1, clipRef, "</linkclipref>"_L1);
    line(indent + 2, "<mediatype>"_L1, mediaType, "</mediatype>"_L1);
    line(indent + 2, "<trackindex>"_L1, number(trackIndex), "</trackindex>"_L1);
    line(indent + 2, "<clipindex>1</clipindex>"_L1);
    line(indent, "</link>"_L1);
}

void XmemlText::marker(int indent, const QString &comment, const QString &name, qint64 in, qint64 out, int colour)
{
    line(indent, "<marker>"_L1);
    line(indent + 2, "<comment>"_L1, comment, "</comment>"_L1);
    line(indent + 2, "<name>"_L1, name, "</name>"_L1);
    line(indent + 2, "<in>"_L1, number(in), "</in>"_L1);
    line(indent + 2, "<out>"_L1, number(out), "</out>"_L1);
    line(indent + 2, "<type>Comment</type>"_L1);
    line(indent + 2, "<color>"_L1, number(colour), "</color>"_L1);
    line(indent, "</marker>"_L1);
}
