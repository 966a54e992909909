#include "ui/detail/ExportActions.h"

#include "export/OtioTimeline.h"
#include "export/Preflight.h"
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
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

namespace {

// Texts live outside the coroutines: g++ 12 cannot compile QStringLiteral inside one.
const QString xmlFilter = QStringLiteral("XML (*.xml)");
const QString premiereMissing = QStringLiteral("Premiere Pro is not installed here — save the sequence to import it later");
const QString resolveMissing = QStringLiteral("DaVinci Resolve is not installed here — save the timeline to import it later");

// The marker sequence asks ffprobe about the first clip's audio, so it is built on the tool pool.
QFuture<QString> markerSequenceOnToolPool(const ShootSession &session, const ToolLocations &tools)
{
    return QtConcurrent::run(toolThreadPool(), [session, tools] { return generatePremiereXML(session, premiereSourceTrack(session, tools)); });
}

// The pre-flight line for the documents that lay markers on the clips (xmeml, OTIO); without
// matched clips they carry every marker, so there is nothing to warn about.
QString footageCheck(const ShootSession &session)
{
    return session.matchedClips.isEmpty() ? QString() : preflight(session).summary();
}

QString placeOf(const QString &path)
{
    const QFileInfo file(path);
    return QStringLiteral("“%1” in %2").arg(file.fileName(), QDir::toNativeSeparators(file.absolutePath()));
}

QString withCheck(const QString &message, const QString &check)
{
    return check.isEmpty() ? message : message + u' ' + check + u'.';
}

ExportReport saveDocument(const QString &document, const QString &path, const QString &check, const QString &note = QString())
{
    QString error;
    if (!writeFileAtomically(path, document.toUtf8(), &error))
        return {QStringLiteral("Could not save ") + placeOf(path) + QStringLiteral(": ") + error, path, true};
    return {withCheck(QStringLiteral("Saved ") + placeOf(path) + u'.' + note, check), path, false};
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
    selectsButton->setObjectName(QStringLiteral("selectsButton"));
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
    saveXML->setObjectName(QStringLiteral("saveXML"));
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
    const QPointer<ExportActions> self(this);
    m_desktop.chooseSaveFile({ExportFiles::markersEDL, QString(), QString()}, [self, edl](const QString &path) {
        const ExportReport report = saveDocument(edl, ExportFiles::withExtension(path, QStringLiteral("edl")), QString());
        if (self)
            Q_EMIT self->reported(report);
    });
}

void ExportActions::exportXML()
{
    exportXMLTask();
}

// The widget may be gone when the sequence is ready: the task ends quietly then.
QCoro::Task<> ExportActions::exportXMLTask()
{
    const QPointer<ExportActions> self(this);
    const QString check = footageCheck(m_session);
    QFuture<QString> building = markerSequenceOnToolPool(m_session, m_environment.tools);
    const QString xml = co_await building;
    if (!self)
        co_return;
    m_desktop.chooseSaveFile({ExportFiles::markersXML, xmlFilter, QString()}, [self, xml, check](const QString &path) {
        const ExportReport report = saveDocument(xml, path, check);
        if (self)
            Q_EMIT self->reported(report);
    });
}

void ExportActions::openInPremiere()
{
    openInPremiereTask();
}

QCoro::Task<> ExportActions::openInPremiereTask()
{
    const QPointer<ExportActions> self(this);
    const QString check = footageCheck(m_session);
    QFuture<QString> building = markerSequenceOnToolPool(m_session, m_environment.tools);
    const QString xml = co_await building;
    if (self)
        sendToPremiere(xml, PremiereDocument::Markers, check);
}

void ExportActions::sendToPremiere(const QString &xml, PremiereDocument document, const QString &check)
{
    const EditorHandoff handoff = m_environment.handoff();
    const QString name = document == PremiereDocument::Markers ? ExportFiles::markersXML : ExportFiles::selectsXML;
    if (handoff.hasPremiere()) {
        const bool written = document == PremiereDocument::Markers ? handoff.openInPremiere(xml) : handoff.openSelectsInPremiere(xml);
        const QString file = handoff.temporaryFile(name);
        Q_EMIT reported(written ? ExportReport{withCheck(QStringLiteral("Opened ") + placeOf(file) + QStringLiteral(" in Premiere Pro."), check), file}
                                : ExportReport{QStringLiteral("Could not write ") + placeOf(file) + QStringLiteral(" for Premiere Pro."), file, true});
        return;
    }
    const QPointer<ExportActions> self(this);
    m_desktop.chooseSaveFile({name, xmlFilter, premiereMissing}, [self, xml, check](const QString &path) {
        const ExportReport report = saveDocument(xml, path, check, QStringLiteral(" Premiere Pro is not installed here."));
        if (self)
            Q_EMIT self->reported(report);
    });
}

void ExportActions::openInResolve()
{
    const QString otio = generateOTIO(m_session);
    const QString check = footageCheck(m_session);
    const ExportEnvironment environment = m_environment;
    const bool hasResolve = environment.handoff().hasResolve();
    Desktop &desktop = m_desktop;
    const QPointer<ExportActions> self(this);
    desktop.chooseSaveFile({ExportFiles::sessionOTIO, QString(), hasResolve ? QString() : resolveMissing},
                           [self, otio, check, hasResolve, &desktop, environment](const QString &path) {
        const QString otioPath = ExportFiles::withExtension(path, QStringLiteral("otio"));
        const QString note = hasResolve ? QString()
                                        : QStringLiteral(" DaVinci Resolve is not installed here: import the file there with"
                                                         " Timelines > Import > AAF, EDL, XML, OTIO.");
        const ExportReport report = saveDocument(otio, otioPath, check, note);
        if (self)
            Q_EMIT self->reported(report);
        if (report.failed || !hasResolve)
            return;
        desktop.inform({QStringLiteral("OTIO saved"), resolveImportInstructions(QFileInfo(otioPath).fileName()), QStringLiteral("Open Resolve"),
                        QStringLiteral("Done")},
                       [environment] { environment.handoff().launchResolve(); });
    });
}

void ExportActions::exportSelectsToPremiereAction()
{
    sendToPremiere(generateSelectsXML(m_session, m_selects.selectedSegmentIds(), m_selects.segmentGrades(), m_selects.transcript()),
                   PremiereDocument::Selects, QString());
}
