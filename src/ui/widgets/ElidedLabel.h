#pragma once

#include <QWidget>

// One line of text that shortens itself with an ellipsis to the width it is given, instead of
// being clipped or widening its column: scan progress lines, folder paths.
class ElidedLabel : public QWidget
{
    Q_OBJECT

public:
    explicit ElidedLabel(Qt::TextElideMode mode, QWidget *parent = nullptr);

    void setText(const QString &text);
    QString text() const { return m_text; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
    Qt::TextElideMode m_mode;
};
