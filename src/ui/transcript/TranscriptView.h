#pragma once

#include "model/ShootSession.h"
#include "ui/transcript/SegmentSelection.h"
#include "ui/transcript/TranscriptSource.h"

#include <QPointer>
#include <QSet>
#include <QWidget>

class QLabel;
class QMenu;
class QPushButton;
class QToolButton;
class QVBoxLayout;
class SelectsModel;
class SpeakerRunView;

// The transcript tab of a session: utterances flowing in speaker runs, where the editor picks
// selects with clicks, offers a range with a shift-click and grades picks from the context menu,
// or works from the keyboard: the arrows move a ring from utterance to utterance, Space or
// Return toggles the select, A, B and C grade it, 0 or Backspace takes the grade away.
// The selects live in the host's SelectsModel, which must outlive the view; this view only edits
// them. The transcript is fetched once, when the view is first shown. It lays out its full
// height; scrolling is the host's business.
class TranscriptView : public QWidget
{
    Q_OBJECT

public:
    TranscriptView(ShootSession session, SelectsModel *selects, TranscriptLoader loader,
                   QWidget *parent = nullptr);

    const QList<TranscriptSegment> &transcriptSegments() const { return m_transcriptSegments; }
    bool isLoadingTranscript() const { return m_isLoadingTranscript; }
    const QSet<QString> &highlightRangeIds() const { return m_highlightRangeIds; }
    bool showHighlightButton() const { return m_showHighlightButton; }
    // The utterance the keyboard acts on; empty before the first click or key.
    const QString &currentSegmentId() const { return m_currentId; }

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    QCoro::Task<> loadTranscript();
    void showTranscript(QList<TranscriptSegment> segments);
    void updatePane();
    void refreshSelection();
    void applySecondaryColours();

    void chipClicked(const QString &segmentId, Qt::KeyboardModifiers modifiers);
    void openChipMenu(const QString &segmentId, const QPoint &globalPos);
    void offerRange(const QSet<QString> &ids);
    void closeRangeOffer(bool accept);
    void editSelection(const std::function<void(SegmentSelection &)> &edit);
    void moveCurrent(qsizetype step);
    void showCurrent();

    ShootSession m_session;
    SelectsModel *m_selects;
    TranscriptLoader m_loader;

    QList<TranscriptSegment> m_transcriptSegments;
    bool m_isLoadingTranscript = false;
    QSet<QString> m_highlightRangeIds;
    bool m_showHighlightButton = false;
    QString m_currentId;

    QWidget *m_loadingPane;
    QWidget *m_emptyPane;
    QWidget *m_transcriptPane;
    QLabel *m_loadingText;
    QLabel *m_emptyIcon;
    QLabel *m_emptyText;
    QWidget *m_selectionBar;
    QLabel *m_selectionCount;
    QToolButton *m_clearAll;
    QVBoxLayout *m_runsLayout;
    QList<SpeakerRunView *> m_runViews;
    QWidget *m_rangeOfferBar;
    QPushButton *m_acceptRange;
    QToolButton *m_dismissRange;
    QPointer<QMenu> m_chipMenu;
};
