#pragma once

#include "ui/transcript/SpeakerRunView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

// Plays the editor at a transcript shown anywhere under `root`: clicks on utterance chips, their
// context menu, the range offer and the selection bar's buttons.
namespace TranscriptDriver {

struct Line {
    const char *id;
    const char *speaker;
    const char *text;
};

// One utterance every three seconds from 10:00:03:00.
inline QList<TranscriptSegment> transcript(std::initializer_list<Line> lines)
{
    QList<TranscriptSegment> segments;
    int second = 0;
    for (const Line &line : lines) {
        TranscriptSegment s;
        s.id = QString::fromUtf8(line.id);
        s.speaker = QString::fromUtf8(line.speaker);
        s.text = QString::fromUtf8(line.text);
        s.timecode = QStringLiteral("10:00:%1:00").arg(second += 3, 2, 10, QChar(u'0'));
        segments.append(s);
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

inline void click(const QWidget *root, const QString &segmentId, Qt::KeyboardModifiers modifiers = {})
{
    SpeakerRunView *run = runOf(root, segmentId);
    QVERIFY2(run, qPrintable(segmentId));
    QTest::mouseClick(run, Qt::LeftButton, modifiers, run->chipRect(segmentId).center());
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

inline void chooseFromMenu(const QWidget *root, const QString &segmentId, const QString &entry)
{
    QMenu *menu = openMenu(root, segmentId);
    QVERIFY(menu);
    const QList<QAction *> actions = menu->actions();
    const auto found = std::find_if(actions.cbegin(), actions.cend(), [&](QAction *a) { return a->text() == entry; });
    QVERIFY2(found != actions.cend(), qPrintable(entry));
    (*found)->trigger();
    menu->close();
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

inline QToolButton *toolButton(const QWidget *root, const QString &text)
{
    for (QToolButton *button : root->findChildren<QToolButton *>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

} // namespace TranscriptDriver
