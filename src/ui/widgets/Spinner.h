#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>

// A small indeterminate progress indicator: a rotating arc, drawn only while visible.
class Spinner : public QWidget
{
    Q_OBJECT

public:
    explicit Spinner(int diameter, QWidget *parent = nullptr);
    // An invalid colour follows the palette's text colour.
    void setColor(const QColor &color);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    int m_diameter;
    int m_angle = 0;
    QColor m_color;
    QTimer m_timer;
};
