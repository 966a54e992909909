#include "ui/detail/ExportActions.h"

#include "export/OtioTimeline.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "media/ToolRunner.h"
#include "platform/AtomicFile.h"
#include "platform/Desktop.h"
#include "ui/transcript/SelectsModel.h"
#include "ui/widgets/Buttons.h"
#include "ui/widgets/Theme.h"

#include <QCoro/QCoroFuture>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

namespace {

// Texts live outside the coroutines: g++ 12 cannot compile QStringLiteral inside one.
const QString xmlFilter = QStringLiteral("XML (*.xml)");

// The marker sequence asks ffprobe about the first clip's audio, so it is built on the tool pool.
QFuture<QString> markerSequenceOnToolPool(const ShootSession &session, const ToolLocations &tools)
{
    return QtConcurrent::run(toolThreadPool(), [session, tools] { return generatePremiereXML(session, premiereSourceTrack(session, tools)); });
}

} // namespace

ExportActions::ExportActions(Desktop &desktop, ExportEnvironment environment, SelectsModel &selects, QWidget *parent)
    : QWidget(parent), m_desktop(desktop), m_environment(std::move(environment)), m_selects(selects)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(20);

    m_selectsSection = new QWidget;
    m_selectsSection->setObjectName(QStringLiteral("selectsSection"));
    auto *section = new QVBoxLayout(m_selectsSection);
    section->setContentsMargins(0, 0, 0, 0);
    section->setSpacing(6);
    section->addWidget(Theme::heading(QStringLiteral("SELECTS"), Theme::color(Theme::Colour::amber)));
    m_selectsCount = Theme::label(QString(), Theme::TextStyle::Caption, true);
    m_selectsCount->setObjectName(QStringLiteral("selectsCount"));
    section->addWidget(m_selectsCount);
    QPushButton *selectsButton = Buttons::prominent(QStringLiteral("Open selects in Premiere Pro"), QStringLiteral("film"),
                                                    Theme::color(Theme::Colour::amber));
    connect(selectsButton, &QPushButton::clicked, this, &ExportActions::exportSelectsToPremiereAction);
    section->addWidget(selectsButton);
    column->addWidget(m_selectsSection);

    auto *buttons = new QVBoxLayout;
    buttons->setSpacing(8);
    QPushButton *resolve = Buttons::prominent(QStringLiteral("Open in DaVinci Resolve"), QStringLiteral("play.circle.fill"), Theme::indigo());
    connect(resolve, &QPushButton::clicked, this, &ExportActions::openInResolve);
    QPushButton *premiere = Buttons::prominent(QStringLiteral("Open in Premiere Pro"), QStringLiteral("play.circle"),
                                               Theme::color(Theme::Colour::premiereBlue));
    connect(premiere, &QPushButton::clicked, this, &ExportActions::openInPremiere);
    auto *saves = new QHBoxLayout;
    QPushButton *saveEDL = Buttons::bordered(QStringLiteral("Save EDL"), QStringLiteral("arrow.down.doc"));
    connect(saveEDL, &QPushButton::clicked, this, &ExportActions::exportEDL);
    QPushButton *saveXML = Buttons::bordered(QStringLiteral("Save XML"), QStringLiteral("arrow.down.doc"));
    connect(saveXML, &QPushButton::clicked, this, &ExportActions::exportXML);
    saves->addWidget(saveEDL, 1);
    saves->addWidget(saveXML, 1);
    buttons->addWidget(resolve);
    buttons->addWidget(premiere);
    buttons->addLayout(saves);
    column->addLayout(buttons);

    connect(&m_selects, &SelectsModel::selectionChanged, this, &ExportActions::updateSelects);
    updateSelects();
}

void ExportActions::updateSelects()
{
    const qsizetype count = m_selects.selectedSegmentIds().size();
    m_selectsSection->setVisible(count > 0);
    m_selectsCount->setText(selectsCountText(count) + QStringLiteral(" ready to export"));
}

void ExportActions::exportEDL()
{
    const QString edl = generateResolveEDL(m_session);
    m_desktop.chooseSaveFile({ExportFiles::markersEDL, QString()}, [edl](const QString &path) {
        ExportFiles::saveWithExtension(edl, path, QStringLiteral("edl"));
    });
}

void ExportActions::exportXML()
{
    exportXMLTask();
}

// The widget may be gone when the sequence is ready: only what the task copied is used after.
QCoro::Task<> ExportActions::exportXMLTask()
{
    Desktop &desktop = m_desktop;
    QFuture<QString> building = markerSequenceOnToolPool(m_session, m_environment.tools);
    const QString xml = co_await building;
    desktop.chooseSaveFile({ExportFiles::markersXML, xmlFilter}, [xml](const QString &path) { writeFileAtomically(path, xml.toUtf8()); });
}

void ExportActions::openInPremiere()
{
    openInPremiereTask();
}

QCoro::Task<> ExportActions::openInPremiereTask()
{
    const ExportEnvironment environment = m_environment; // keeps the workspace for the hand-off
    QFuture<QString> building = markerSequenceOnToolPool(m_session, environment.tools);
    const QString xml = co_await building;
    environment.handoff().openInPremiere(xml);
}

void ExportActions::openInResolve()
{
    const QString otio = generateOTIO(m_session);
    Desktop &desktop = m_desktop;
    const ExportEnvironment environment = m_environment;
    desktop.chooseSaveFile({ExportFiles::sessionOTIO, QString()}, [otio, &desktop, environment](const QString &path) {
        const QString saved = ExportFiles::saveWithExtension(otio, path, QStringLiteral("otio"));
        desktop.inform({QStringLiteral("OTIO saved"), resolveImportInstructions(QFileInfo(saved).fileName()), QStringLiteral("Open Resolve"),
                        QStringLiteral("Done")},
                       [environment] { environment.handoff().launchResolve(); });
    });
}

void ExportActions::exportSelectsToPremiereAction()
{
    m_environment.handoff().openSelectsInPremiere(
        generateSelectsXML(m_session, m_selects.selectedSegmentIds(), m_selects.segmentGrades(), m_selects.transcript()));
}
