#pragma once

#include "ui/UiTest.h"
#include "ui/transcript/SpeakerRunView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>

// Plays the editor at a transcript shown anywhere under `root`: clicks on utterance chips and
// their context menu. Each action says whether it found the chip (and entry) it acts on.
namespace TranscriptDriver {

// Speakers A, A, B, B, A: three runs, the last a second run of A; one line every 3 s.
inline QList<TranscriptSegment> interview()
{
    const char *const lines[][2] = {{"SPEAKER A", "So tell me where it started."}, {"SPEAKER A", "Take your time."},
                                    {"SPEAKER B", "It started in my grandfather's workshop, in 1986."},
                                    {"SPEAKER B", "I was nine."}, {"SPEAKER A", "And the first boat?"}};
    QList<TranscriptSegment> segments;
    for (const auto &[speaker, text] : lines) {
        TranscriptSegment &s = segments.emplace_back();
        s.id = u's' + QString::number(segments.size());
        s.speaker = QString::fromUtf8(speaker);
        s.text = QString::fromUtf8(text);
        s.timecode = QStringLiteral("10:00:%1:00").arg(3 * segments.size(), 2, 10, QChar(u'0'));
    }
    return segments;
}

inline SpeakerRunView *runOf(const QWidget *root, const QString &segmentId)
{
    for (SpeakerRunView *run : root->findChildren<SpeakerRunView *>()) {
        if (!run->chipRect(segmentId).isEmpty())
            return run;
    }
    return nullptr;
}

[[nodiscard]] inline bool click(const QWidget *root, const QString &segmentId, Qt::KeyboardModifiers modifiers = {})
{
    SpeakerRunView *run = runOf(root, segmentId);
    if (run)
        QTest::mouseClick(run, Qt::LeftButton, modifiers, run->chipRect(segmentId).center());
    return run;
}

inline QMenu *openMenu(const QWidget *root, const QString &segmentId)
{
    SpeakerRunView *run = runOf(root, segmentId);
    if (!run)
        return nullptr;
    const QPoint at = run->chipRect(segmentId).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, run->mapToGlobal(at));
    QApplication::sendEvent(run, &event);
    return root->findChild<QMenu *>();
}

[[nodiscard]] inline bool chooseFromMenu(const QWidget *root, const QString &segmentId, const QString &entry)
{
    QMenu *menu = openMenu(root, segmentId);
    QAction *action = menu ? withText(menu->actions(), entry) : nullptr;
    if (action)
        action->trigger();
    if (menu)
        menu->close();
    return action;
}

// The range offer's "Select …" button.
inline QPushButton *offerButton(const QWidget *root)
{
    for (QPushButton *button : root->findChildren<QPushButton *>()) {
        if (button->text().startsWith(u"Select "))
            return button;
    }
    return nullptr;
}

} // namespace TranscriptDriver
