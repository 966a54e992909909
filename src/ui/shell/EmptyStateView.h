#pragma once

#include <QWidget>

// The detail pane when no session is selected and the settings are closed.
class EmptyStateView : public QWidget
{
    Q_OBJECT

public:
    explicit EmptyStateView(QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void refreshIcon();
};
