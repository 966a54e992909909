#pragma once

#include "model/ShootSession.h"

#include <QList>
#include <QWidget>

// The session's time line at a glance: the matched clips as bars and the markers as ticks in
// their type colours, a marker that lands on no footage in amber with a raised tick. It is the
// picture an editor checks before a hand-off, drawn from the same pre-flight answer the
// documents follow. Hovering names a marker or clip; clicking a marker asks for its row.
class CoverageStrip : public QWidget
{
    Q_OBJECT

public:
    explicit CoverageStrip(QWidget *parent = nullptr);

    // Hidden for a session with neither markers nor clips.
    void showSession(const ShootSession &session);

    // Where marker `index` (in session order) is drawn, for the tests; empty when it is not.
    QRect tickRect(qsizetype index) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void markerClicked(qsizetype index);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    struct Tick {
        qint64 frame = 0;
        QColor colour;
        bool onFootage = true;
        QString name;
    };
    struct Bar {
        qint64 start = 0;
        qint64 end = 0;
        QString name;
    };

    QRectF track() const;
    qreal xOf(qint64 frame) const;
    qsizetype tickAt(const QPoint &pos) const;
    qsizetype barAt(const QPoint &pos) const;

    ShootSession m_session;
    QList<Tick> m_ticks;
    QList<Bar> m_bars;
    qint64 m_first = 0;
    qint64 m_last = 1;
    QString m_startText;
    QString m_endText;
    QString m_summary;
    bool m_warns = false;
};
