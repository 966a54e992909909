#include "export/XmemlText.h"

#include "export/TextCleaning.h"

using namespace Qt::StringLiterals;

XmemlText::XmemlText(qsizetype capacity, int fps)
    : m_rate(u"<rate><timebase>"_s + QString::number(fps) + u"</timebase><ntsc>FALSE</ntsc></rate>"_s)
{
    m_text.reserve(capacity);
}

QStringView XmemlText::spaces(int count)
{
    static constexpr char16_t blank[] = u"                                ";
    return QStringView(blank, count);
}

QString XmemlText::pathURL(const QString &path)
{
    // "&" and "'" are legal in a URL path but not in XML text, so the URL is escaped once more.
    return u"file://localhost"_s + xmlEscaped(percentEncodedPath(path));
}

void XmemlText::sequenceHeader(const QString &name, qint64 duration, const QString &timecode, qint64 frame)
{
    m_text += u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>"_s;
    line(0, u"<!DOCTYPE xmeml>"_s);
    line(0, u"<xmeml version=\"4\">"_s);
    line(2, u"<sequence>"_s);
    line(4, u"<name>"_s, name, u"</name>"_s);
    line(4, u"<duration>"_s, number(duration), u"</duration>"_s);
    line(4, m_rate);
    timecodeElement(4, timecode, frame);
}

void XmemlText::sequenceEnd()
{
    line(4, u"</media>"_s);
    line(2, u"</sequence>"_s);
    line(0, u"</xmeml>"_s);
}

void XmemlText::timecodeElement(int indent, const QString &timecode, qint64 frame)
{
    line(indent, u"<timecode>"_s);
    line(indent + 2, m_rate);
    line(indent + 2, u"<string>"_s, safeXML(timecode), u"</string>"_s);
    line(indent + 2, u"<frame>"_s, number(frame), u"</frame>"_s);
    line(indent + 2, u"<displayformat>NDF</displayformat>"_s);
    line(indent, u"</timecode>"_s);
}

void XmemlText::clipItemOpening(int indent, const QString &id, const QString &name, qint64 duration, qint64 in,
                                qint64 out, qint64 start, qint64 end)
{
    line(indent, u"<clipitem id=\""_s, id, u"\">"_s);
    line(indent + 2, u"<name>"_s, name, u"</name>"_s);
    line(indent + 2, u"<duration>"_s, number(duration), u"</duration>"_s);
    line(indent + 2, m_rate);
    line(indent + 2, u"<in>"_s, number(in), u"</in>"_s);
    line(indent + 2, u"<out>"_s, number(out), u"</out>"_s);
    line(indent + 2, u"<start>"_s, number(start), u"</start>"_s);
    line(indent + 2, u"<end>"_s, number(end), u"</end>"_s);
}

void XmemlText::fileElement(int indent, const QString &fileId, const QString &name, const ClipSpan &span)
{
    const QString frames = number(span.frames);
    line(indent, u"<file id=\""_s, fileId, u"\">"_s);
    line(indent + 2, u"<name>"_s, name, u"</name>"_s);
    line(indent + 2, u"<pathurl>"_s, pathURL(span.clip->path), u"</pathurl>"_s);
    line(indent + 2, u"<duration>"_s, frames, u"</duration>"_s);
    line(indent + 2, m_rate);
    timecodeElement(indent + 2, span.timecode, span.start);
    line(indent + 2, u"<media>"_s);
    line(indent + 4, u"<video>"_s);
    line(indent + 6, u"<samplecharacteristics>"_s);
    line(indent + 8, u"<width>"_s, number(span.clip->width.value_or(1920)), u"</width>"_s);
    line(indent + 8, u"<height>"_s, number(span.clip->height.value_or(1080)), u"</height>"_s);
    line(indent + 6, u"</samplecharacteristics>"_s);
    line(indent + 4, u"</video>"_s);
    line(indent + 4, u"<audio>"_s);
    line(indent + 6, u"<channelcount>2</channelcount>"_s);
    line(indent + 4, u"</audio>"_s);
    line(indent + 2, u"</media>"_s);
    line(indent, u"</file>"_s);
}

void XmemlText::link(int indent, const QString &clipRef, QStringView mediaType, int trackIndex)
{
    line(indent, u"<link>"_s);
    line(indent + 2, u"<linkclipref>"_s, clipRef, u"</linkclipref>"_s);
    line(indent + 2, u"<mediatype>"_s, mediaType, u"</mediatype>"_s);
    line(indent + 2, u"<trackindex>"_s, number(trackIndex), u"</trackindex>"_s);
    line(indent + 2, u"<clipindex>1</clipindex>"_s);
    line(indent, u"</link>"_s);
}

void XmemlText::marker(int indent, const QString &comment, const QString &name, qint64 in, qint64 out, int colour)
{
    line(indent, u"<marker>"_s);
    line(indent + 2, u"<comment>"_s, comment, u"</comment>"_s);
    line(indent + 2, u"<name>"_s, name, u"</name>"_s);
    line(indent + 2, u"<in>"_s, number(in), u"</in>"_s);
    line(indent + 2, u"<out>"_s, number(out), u"</out>"_s);
    line(indent + 2, u"<type>Comment</type>"_s);
    line(indent + 2, u"<color>"_s, number(colour), u"</color>"_s);
    line(indent, u"</marker>"_s);
}
