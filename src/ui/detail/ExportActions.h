#pragma once

#include "model/ShootSession.h"
#include "ui/detail/ExportEnvironment.h"
#include "ui/detail/ExportNotice.h"

#include <QCoro/QCoroTask>
#include <QWidget>

class Desktop;
class QLabel;
class SelectsModel;

// The session's way into the editing applications: the selects picked in the transcript (shown
// while there are any) for Premiere Pro, then DaVinci Resolve, Premiere Pro and the two save
// buttons. None is ever disabled; each exports whatever the session holds. Every save and
// hand-off is reported, and a hand-off to an application that is not installed saves where the
// user chooses instead.
class ExportActions : public QWidget
{
    Q_OBJECT

public:
    // Reads the picks from `selects`, which must outlive this widget.
    ExportActions(Desktop &desktop, ExportEnvironment environment, SelectsModel &selects, QWidget *parent = nullptr);

    void showSession(const ShootSession &session) { m_session = session; }

    void exportEDL();
    void exportXML();
    void openInPremiere();
    void openInResolve();
    void exportSelectsToPremiereAction();

Q_SIGNALS:
    void reported(const ExportReport &report);

private:
    enum class PremiereDocument { Markers, Selects };

    void updateSelects();
    QCoro::Task<> exportXMLTask();
    QCoro::Task<> openInPremiereTask();
    void sendToPremiere(const QString &xml, PremiereDocument document, const QString &check);

    Desktop &m_desktop;
    ExportEnvironment m_environment;
    SelectsModel &m_selects;
    ShootSession m_session;

    QWidget *m_selectsSection;
    QLabel *m_selectsCount;
};
