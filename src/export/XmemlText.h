#pragma once

#include "export/ExportClips.h"

#include <QString>
#include <QStringView>

// The text of an xmeml document as the two xmeml writers lay it out: every line after the first
// starts with its line feed, so the document ends without one, and the shared elements (sequence
// header, clip item opening, file element, link) are written at the indentation each writer
// gives them.
class XmemlText
{
public:
    XmemlText(qsizetype capacity, int fps);

    template<typename... Parts>
    void line(int indent, const Parts &...parts)
    {
        m_text += QLatin1Char('\n');
        m_text += spaces(indent);
        ((m_text += parts), ...);
    }

    void append(const QString &text) { m_text += text; }

    // From the XML declaration to the sequence's closing </timecode>.
    void sequenceHeader(const QString &name, qint64 duration, const QString &timecode, qint64 frame);
    // From the closing </media> to the end of the document.
    void sequenceEnd();
    void timecodeElement(int indent, const QString &timecode, qint64 frame);
    void clipItemOpening(int indent, const QString &id, const QString &name, qint64 duration, qint64 in,
                         qint64 out, qint64 start, qint64 end);
    // The file element of a clip item whose own lines are at `indent`.
    void fileElement(int indent, const QString &fileId, const QString &name, const ClipSpan &span);
    void link(int indent, const QString &clipRef, QStringView mediaType, int trackIndex);
    void marker(int indent, const QString &comment, const QString &name, qint64 in, qint64 out, int colour);

    QString take() { return std::move(m_text); }

    static QStringView spaces(int count);
    static QString pathURL(const QString &path);
    static QString number(qint64 value) { return QString::number(value); }

private:
    QString m_text;
    QString m_rate;
};
