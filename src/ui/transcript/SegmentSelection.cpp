#include "ui/transcript/SegmentSelection.h"

#include <algorithm>

void SegmentSelection::toggle(const QString &id)
{
    if (isSelected(id))
        remove(id);
    else
        selectedSegmentIds.insert(id);
}

void SegmentSelection::toggleGrade(const QString &id, const QString &grade)
{
    selectedSegmentIds.insert(id);
    if (segmentGrades.value(id) == grade)
        segmentGrades.remove(id);
    else
        segmentGrades.insert(id, grade);
}

void SegmentSelection::remove(const QString &id)
{
    selectedSegmentIds.remove(id);
    segmentGrades.remove(id);
}

void SegmentSelection::addAll(const QSet<QString> &ids)
{
    selectedSegmentIds.unite(ids);
}

void SegmentSelection::clear()
{
    selectedSegmentIds.clear();
    segmentGrades.clear();
}

std::optional<Rgb> gradeColor(const QString &grade)
{
    if (grade == u"A")
        return Palette::green;
    if (grade == u"B")
        return Rgb{91, 141, 239};
    if (grade == u"C")
        return Palette::amber;
    return std::nullopt;
}

Rgb highlightColor(const QString &id, const QHash<QString, QString> &segmentGrades)
{
    const auto grade = segmentGrades.constFind(id);
    if (grade == segmentGrades.cend())
        return Palette::indigo;
    return gradeColor(*grade).value_or(Palette::indigo);
}

ChipState chipState(const QString &id, const QSet<QString> &selectedSegmentIds,
                    const QSet<QString> &highlightRangeIds)
{
    if (highlightRangeIds.contains(id))
        return ChipState::Highlighted;
    if (selectedSegmentIds.contains(id))
        return ChipState::Selected;
    return ChipState::Plain;
}

QSet<QString> segmentsBetween(const QList<TranscriptSegment> &allSegments, const QString &from,
                              const QString &to)
{
    const auto hasId = [](const QString &id) {
        return [&id](const TranscriptSegment &segment) { return segment.id == id; };
    };
    const auto first = std::find_if(allSegments.cbegin(), allSegments.cend(), hasId(from));
    const auto last = std::find_if(allSegments.cbegin(), allSegments.cend(), hasId(to));
    if (first == allSegments.cend() || last == allSegments.cend())
        return {to};
    const auto [begin, end] = std::minmax(first, last);
    QSet<QString> ids;
    for (auto it = begin; it <= end; ++it)
        ids.insert(it->id);
    return ids;
}

std::optional<QString> shiftClickAnchor(const QSet<QString> &selectedSegmentIds,
                                        const QSet<QString> &highlightRangeIds)
{
    const QSet<QString> &pool = selectedSegmentIds.isEmpty() ? highlightRangeIds
                                                              : selectedSegmentIds;
    if (pool.isEmpty())
        return std::nullopt;
    return *std::min_element(pool.cbegin(), pool.cend());
}

QString selectsCountText(qsizetype count)
{
    return QString::number(count) + (count == 1 ? QStringLiteral(" select")
                                                : QStringLiteral(" selects"));
}
