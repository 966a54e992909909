#pragma once

#include "model/TranscriptSegment.h"
#include "ui/transcript/SegmentSelection.h"

#include <QObject>

// The selects of the session on screen, owned by the screen that hosts the transcript. The
// transcript view edits it and the selects export reads it, so both see the same picks.
class SelectsModel : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    const SegmentSelection &selection() const { return m_selection; }
    const QSet<QString> &selectedSegmentIds() const { return m_selection.selectedSegmentIds; }
    const QHash<QString, QString> &segmentGrades() const { return m_selection.segmentGrades; }

    // Emits selectionChanged only when something actually changed.
    void setSelection(const SegmentSelection &selection);

    // The transcript the picks are made in: a pick that names no marker exports the utterance.
    const QList<TranscriptSegment> &transcript() const { return m_transcript; }
    void setTranscript(const QList<TranscriptSegment> &transcript) { m_transcript = transcript; }

Q_SIGNALS:
    void selectionChanged();

private:
    SegmentSelection m_selection;
    QList<TranscriptSegment> m_transcript;
};
