#pragma once

#include "model/Rgb.h"
#include "model/TranscriptSegment.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

// The editor's selects: which utterances are picked and the grade of some of them.
// Every operation keeps each graded id selected, so a grade never outlives its select.
struct SegmentSelection {
    QSet<QString> selectedSegmentIds;
    QHash<QString, QString> segmentGrades;

    bool isSelected(const QString &id) const { return selectedSegmentIds.contains(id); }

    // A plain click: select, or deselect together with the grade.
    void toggle(const QString &id);
    // Grading selects the segment; giving it the grade it already has takes the grade away.
    void toggleGrade(const QString &id, const QString &grade);
    // The segment stays selected.
    void clearGrade(const QString &id) { segmentGrades.remove(id); }
    void remove(const QString &id);
    // Taking a range offer adds its ids and leaves every grade as it was.
    void addAll(const QSet<QString> &ids);
    void clear();

    friend bool operator==(const SegmentSelection &, const SegmentSelection &) = default;
};

inline const QStringList gradeNames{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};

std::optional<Rgb> gradeColor(const QString &grade);

// The tint of a selected chip: its grade's colour, indigo without one.
Rgb highlightColor(const QString &id, const QHash<QString, QString> &segmentGrades);

enum class ChipState { Plain, Selected, Highlighted };

// A pending range offer outshines the selection.
ChipState chipState(const QString &id, const QSet<QString> &selectedSegmentIds,
                    const QSet<QString> &highlightRangeIds);

// The ids from one segment to another in transcript order, both ends included; a range may
// cross speaker runs. An id missing from the transcript leaves only the clicked one.
QSet<QString> segmentsBetween(const QList<TranscriptSegment> &allSegments, const QString &from,
                              const QString &to);

// The other end of a shift-click range. Sets keep no click order, so the smallest id stands in
// for "the first one", which keeps the choice the same from run to run.
std::optional<QString> shiftClickAnchor(const QSet<QString> &selectedSegmentIds,
                                        const QSet<QString> &highlightRangeIds);

// "1 select", "3 selects".
QString selectsCountText(qsizetype count);
