#include "ui/transcript/TranscriptView.h"

#include "ui/transcript/SelectsModel.h"
#include "ui/transcript/SpeakerRunView.h"
#include "ui/transcript/TranscriptStyle.h"
#include "ui/transcript/WordWidthCache.h"
#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace {

QLabel *makeLabel(const QString &text, const QFont &font, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setFont(font);
    return label;
}

template <typename Box>
Box *boxLayout(QWidget *owner, const QMargins &margins, int spacing)
{
    auto *box = new Box(owner);
    box->setContentsMargins(margins);
    box->setSpacing(spacing);
    return box;
}

void setTextColour(QWidget *widget, QPalette::ColorRole role, const QColor &colour)
{
    QPalette palette = widget->palette();
    palette.setColor(role, colour);
    widget->setPalette(palette);
}

} // namespace

TranscriptView::TranscriptView(ShootSession session, SelectsModel *selects,
                               TranscriptLoader loader, QWidget *parent)
    : QWidget(parent)
    , m_session(std::move(session))
    , m_selects(selects)
    , m_loader(std::move(loader))
{
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Transcript"));
    auto *column = boxLayout<QVBoxLayout>(this, {}, 0);

    m_loadingPane = new QWidget(this);
    auto *loadingRow = boxLayout<QHBoxLayout>(m_loadingPane, {0, 40, 0, 40}, 10);
    auto *spinner = new QProgressBar(m_loadingPane);
    spinner->setRange(0, 0);
    spinner->setTextVisible(false);
    spinner->setFixedSize(48, 8);
    m_loadingText = makeLabel(tr("Loading transcript..."), Theme::pixelFont(13), m_loadingPane);
    loadingRow->addStretch();
    loadingRow->addWidget(spinner);
    loadingRow->addWidget(m_loadingText);
    loadingRow->addStretch();

    m_emptyPane = new QWidget(this);
    auto *emptyStack = boxLayout<QVBoxLayout>(m_emptyPane, {0, 40, 0, 40}, 8);
    m_emptyIcon = new QLabel(m_emptyPane);
    m_emptyText = makeLabel(tr("No transcript available"), Theme::pixelFont(13), m_emptyPane);
    emptyStack->addWidget(m_emptyIcon, 0, Qt::AlignHCenter);
    emptyStack->addWidget(m_emptyText, 0, Qt::AlignHCenter);

    m_transcriptPane = new QWidget(this);
    auto *transcriptStack = boxLayout<QVBoxLayout>(m_transcriptPane, {}, 0);

    m_selectionBar = new QWidget(m_transcriptPane);
    auto *selectionRow = boxLayout<QHBoxLayout>(m_selectionBar, {4, 0, 4, 8}, 6);
    m_selectionCount = makeLabel({}, Theme::pixelFont(13, QFont::Bold), m_selectionBar);
    m_clearAll = new QToolButton(m_selectionBar);
    m_clearAll->setText(tr("Clear all"));
    m_clearAll->setFont(Theme::pixelFont(12));
    m_clearAll->setAutoRaise(true);
    m_clearAll->setCursor(Qt::PointingHandCursor);
    selectionRow->addWidget(m_selectionCount);
    selectionRow->addStretch();
    selectionRow->addWidget(m_clearAll);
    connect(m_clearAll, &QToolButton::clicked, this,
            [this] { editSelection([](SegmentSelection &s) { s.clear(); }); });

    auto *runs = new QWidget(m_transcriptPane);
    m_runsLayout = boxLayout<QVBoxLayout>(runs, {}, 0);

    m_rangeOfferBar = new QWidget(m_transcriptPane);
    auto *offerRow = boxLayout<QHBoxLayout>(m_rangeOfferBar, {4, 4, 4, 0}, 6);
    m_acceptRange = new QPushButton(m_rangeOfferBar);
    m_acceptRange->setIcon(Icons::symbol(QStringLiteral("highlighter"), Qt::black));
    m_acceptRange->setIconSize(QSize(12, 12));
    m_acceptRange->setCursor(Qt::PointingHandCursor);
    const QColor yellow = Theme::color(TranscriptStyle::yellow);
    m_acceptRange->setStyleSheet(
        QStringLiteral("QPushButton { background-color: %1; color: black; border: none;"
                       " border-radius: 6px; padding: 6px 10px; font-size: 11px;"
                       " font-weight: 600; }"
                       " QPushButton:pressed { background-color: %2; }")
            .arg(yellow.name(), yellow.darker(112).name()));
    m_dismissRange = new QToolButton(m_rangeOfferBar);
    m_dismissRange->setAutoRaise(true);
    m_dismissRange->setIconSize(QSize(10, 10));
    m_dismissRange->setCursor(Qt::PointingHandCursor);
    offerRow->addWidget(m_acceptRange);
    offerRow->addWidget(m_dismissRange);
    offerRow->addStretch();
    connect(m_acceptRange, &QPushButton::clicked, this, [this] { closeRangeOffer(true); });
    connect(m_dismissRange, &QToolButton::clicked, this, [this] { closeRangeOffer(false); });

    transcriptStack->addWidget(m_selectionBar);
    transcriptStack->addWidget(runs);
    transcriptStack->addWidget(m_rangeOfferBar);

    column->addWidget(m_loadingPane);
    column->addWidget(m_emptyPane);
    column->addWidget(m_transcriptPane);
    column->addStretch();

    connect(m_selects, &SelectsModel::selectionChanged, this, &TranscriptView::refreshSelection);
    applySecondaryColours();
    updatePane();
    refreshSelection();
}

void TranscriptView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // The task runs on by itself; it checks that the view still exists before storing anything.
    if (m_transcriptSegments.isEmpty() && !m_isLoadingTranscript)
        loadTranscript();
}

void TranscriptView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applySecondaryColours();
}

QCoro::Task<> TranscriptView::loadTranscript()
{
    m_isLoadingTranscript = true;
    updatePane();
    const QPointer<TranscriptView> self(this);
    // Copies, because the view may be gone by the time the fetch returns.
    const TranscriptLoader loader = m_loader;
    const ShootSession session = m_session;
    std::optional<QList<TranscriptSegment>> fetched;
    if (loader) {
        try {
            fetched = co_await loader(session.shareToken);
        } catch (...) {
            // An unreachable service or a missing transcript both mean: use the markers.
        }
    }
    if (!self)
        co_return;
    m_isLoadingTranscript = false;
    showTranscript(transcriptOrFallback(fetched, session));
}

void TranscriptView::showTranscript(QList<TranscriptSegment> segments)
{
    m_transcriptSegments = std::move(segments);
    m_selects->setTranscript(m_transcriptSegments);
    const QList<SpeakerRun> runs = buildSpeakerRuns(m_transcriptSegments);
    m_runViews.reserve(runs.size());
    WordWidthCache chipWidths(SpeakerRunView::chipFont());
    for (qsizetype i = 0; i < runs.size(); ++i) {
        auto *view = new SpeakerRunView(int(i), runs[i], chipWidths);
        connect(view, &SpeakerRunView::chipClicked, this, &TranscriptView::chipClicked);
        connect(view, &SpeakerRunView::chipMenuRequested, this, &TranscriptView::openChipMenu);
        m_runsLayout->addWidget(view);
        m_runViews.append(view);
    }
    refreshSelection();
    updatePane();
}

void TranscriptView::updatePane()
{
    m_loadingPane->setVisible(m_isLoadingTranscript);
    m_emptyPane->setVisible(!m_isLoadingTranscript && m_transcriptSegments.isEmpty());
    m_transcriptPane->setVisible(!m_isLoadingTranscript && !m_transcriptSegments.isEmpty());
}

void TranscriptView::refreshSelection()
{
    const SegmentSelection &selection = m_selects->selection();
    const qsizetype count = selection.selectedSegmentIds.size();
    m_selectionBar->setVisible(count > 0);
    m_selectionCount->setText(selectsCountText(count));
    const bool offered = m_showHighlightButton && !m_highlightRangeIds.isEmpty();
    m_rangeOfferBar->setVisible(offered);
    m_acceptRange->setText(tr("Select %1").arg(m_highlightRangeIds.size()));
    for (SpeakerRunView *run : std::as_const(m_runViews))
        run->setChipStates(selection, m_highlightRangeIds);
}

void TranscriptView::applySecondaryColours()
{
    const QColor secondary = TranscriptStyle::secondaryText(palette());
    for (QLabel *label : {m_loadingText, m_emptyText})
        setTextColour(label, QPalette::WindowText, secondary);
    setTextColour(m_clearAll, QPalette::ButtonText, secondary);
    m_emptyIcon->setPixmap(
        Icons::pixmap(QStringLiteral("text.alignleft"), 22, secondary, devicePixelRatioF()));
    m_dismissRange->setIcon(Icons::symbol(QStringLiteral("xmark"), secondary));
}

void TranscriptView::keyPressEvent(QKeyEvent *event)
{
    if (m_transcriptSegments.isEmpty()) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (m_currentId.isEmpty())
        m_currentId = m_transcriptSegments.first().id;
    const QString id = m_currentId;
    const QString typed = event->text().toUpper();
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        moveCurrent(-1);
        break;
    case Qt::Key_Right:
    case Qt::Key_Down:
        moveCurrent(1);
        break;
    case Qt::Key_Home:
        moveCurrent(-m_transcriptSegments.size());
        break;
    case Qt::Key_End:
        moveCurrent(m_transcriptSegments.size());
        break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        editSelection([&id](SegmentSelection &s) { s.toggle(id); });
        break;
    case Qt::Key_0:
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        editSelection([&id](SegmentSelection &s) { s.clearGrade(id); });
        break;
    default:
        if (!gradeNames.contains(typed) || event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) {
            QWidget::keyPressEvent(event);
            return;
        }
        editSelection([&id, &typed](SegmentSelection &s) { s.toggleGrade(id, typed); });
    }
    showCurrent();
}

void TranscriptView::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    if (m_currentId.isEmpty() && !m_transcriptSegments.isEmpty())
        m_currentId = m_transcriptSegments.first().id;
    showCurrent();
}

void TranscriptView::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    showCurrent();
}

void TranscriptView::moveCurrent(qsizetype step)
{
    const auto current = std::find_if(m_transcriptSegments.cbegin(), m_transcriptSegments.cend(),
                                      [this](const TranscriptSegment &segment) { return segment.id == m_currentId; });
    const qsizetype index = current == m_transcriptSegments.cend() ? 0 : current - m_transcriptSegments.cbegin();
    m_currentId = m_transcriptSegments.at(std::clamp<qsizetype>(index + step, 0, m_transcriptSegments.size() - 1)).id;
}

// The ring shows only while the view has the focus; the scroll area around follows it.
void TranscriptView::showCurrent()
{
    const QString ringed = hasFocus() ? m_currentId : QString();
    for (SpeakerRunView *run : std::as_const(m_runViews)) {
        run->setCurrentChip(ringed);
        const QRect chip = run->chipRect(ringed);
        QScrollArea *area = nullptr;
        for (QWidget *up = parentWidget(); up && !area; up = up->parentWidget())
            area = qobject_cast<QScrollArea *>(up);
        if (!chip.isEmpty() && area && area->widget()) {
            const QPoint centre = run->mapTo(area->widget(), chip.center());
            area->ensureVisible(centre.x(), centre.y(), 0, chip.height());
        }
    }
}

void TranscriptView::chipClicked(const QString &segmentId, Qt::KeyboardModifiers modifiers)
{
    m_currentId = segmentId;
    showCurrent();
    if (modifiers.testFlag(Qt::ShiftModifier)) {
        const auto anchor = shiftClickAnchor(m_selects->selectedSegmentIds(), m_highlightRangeIds);
        if (anchor) {
            offerRange(segmentsBetween(m_transcriptSegments, *anchor, segmentId));
            return;
        }
    }
    editSelection([&segmentId](SegmentSelection &s) { s.toggle(segmentId); });
}

void TranscriptView::openChipMenu(const QString &segmentId, const QPoint &globalPos)
{
    delete m_chipMenu;
    m_chipMenu = new QMenu(this);
    m_chipMenu->setAttribute(Qt::WA_DeleteOnClose);
    const SegmentSelection &selection = m_selects->selection();
    const QString currentGrade = selection.segmentGrades.value(segmentId);
    const QColor text = palette().color(QPalette::WindowText);
    for (const QString &grade : gradeNames) {
        QAction *action = m_chipMenu->addAction(tr("Grade %1").arg(grade), this,
            [this, segmentId, grade] {
                editSelection([&](SegmentSelection &s) { s.toggleGrade(segmentId, grade); });
            });
        if (grade == currentGrade)
            action->setIcon(Icons::symbol(QStringLiteral("checkmark"), text));
    }
    m_chipMenu->addSeparator();
    if (selection.isSelected(segmentId)) {
        m_chipMenu->addAction(tr("Remove select"), this, [this, segmentId] {
            editSelection([&](SegmentSelection &s) { s.remove(segmentId); });
        });
    }
    m_chipMenu->popup(globalPos);
}

void TranscriptView::offerRange(const QSet<QString> &ids)
{
    m_highlightRangeIds = ids;
    m_showHighlightButton = true;
    refreshSelection();
}

void TranscriptView::closeRangeOffer(bool accept)
{
    const QSet<QString> range = std::exchange(m_highlightRangeIds, {});
    m_showHighlightButton = false;
    if (accept)
        editSelection([&range](SegmentSelection &s) { s.addAll(range); });
    refreshSelection();
}

void TranscriptView::editSelection(const std::function<void(SegmentSelection &)> &edit)
{
    SegmentSelection selection = m_selects->selection();
    edit(selection);
    m_selects->setSelection(selection);
}
