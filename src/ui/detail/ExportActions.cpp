#include "ui/detail/ExportActions.h"

#include "export/AvidMarkerList.h"
#include "export/CsvMarkerList.h"
#include "export/FcpXml.h"
#include "export/OtioTimeline.h"
#include "export/Preflight.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "export/Subtitles.h"
#include "media/ToolRunner.h"
#include "platform/AtomicFile.h"
#include "platform/Desktop.h"
#include "state/AppState.h"
#include "ui/transcript/SelectsModel.h"
#include "ui/widgets/Buttons.h"
#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"

#include <QCoro/QCoroFuture>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

namespace {

// Texts live outside the coroutines: g++ 12 cannot compile QStringLiteral inside one.
const QString xmlFilter = QStringLiteral("XML (*.xml)");
const QString fcpxmlFilter = QStringLiteral("Final Cut Pro XML (*.fcpxml)");
const QString fcpxmlExtension = QStringLiteral("fcpxml");
const QString resolveMissing = QStringLiteral("DaVinci Resolve is not installed here — save the timeline to import it later");
const QString premierePro = QStringLiteral("Premiere Pro");
const QString premiereMissing = QStringLiteral("Premiere Pro is not installed here — save the sequence to import it later");
const QString finalCutPro = QStringLiteral("Final Cut Pro");
const QString finalCutMissing = QStringLiteral("Final Cut Pro is not installed here — save the project to import it later");

// The marker sequence asks ffprobe about the first clip's audio, so it is built on the tool pool.
QFuture<QString> markerSequenceOnToolPool(const ShootSession &session, const ToolLocations &tools)
{
    return QtConcurrent::run(toolThreadPool(), [session, tools] { return generatePremiereXML(session, premiereSourceTrack(session, tools)); });
}

// The FCPXML asks ffprobe for the clips' exact frame lengths, so it is built on the tool pool too.
QFuture<QString> finalCutXMLOnToolPool(const ShootSession &session, const ToolLocations &tools)
{
    return QtConcurrent::run(toolThreadPool(), [session, tools] { return generateFCPXML(session, exactFrameDurations(session, tools)); });
}

// The pre-flight line for the documents that lay markers on the clips (xmeml, OTIO, FCPXML); without
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

ExportReport saveDocument(const QString &document, const QString &path, const QString &check, const QString &note)
{
    QString error;
    if (!writeFileAtomically(path, document.toUtf8(), &error))
        return {QStringLiteral("Could not save ") + placeOf(path) + QStringLiteral(": ") + error, path, true};
    return {withCheck(QStringLiteral("Saved ") + placeOf(path) + u'.' + note, check), path, false};
}

QString subtitlesCheck(const QList<TranscriptSegment> &utterances)
{
    return utterances.isEmpty() ? QStringLiteral("No transcript is loaded, so the file holds no subtitles") : QString();
}

// Every document that is only saved, behind one button so new formats do not widen the screen.
QToolButton *exportMenuButton(ExportActions *actions)
{
    auto *button = new QToolButton;
    button->setObjectName(QStringLiteral("exportMenu"));
    button->setText(QStringLiteral("Export"));
    button->setIcon(Icons::symbol(QStringLiteral("arrow.down.doc")));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setCursor(Qt::PointingHandCursor);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    button->setStyleSheet(QStringLiteral("QToolButton { padding: 6px 12px; border-radius: 6px; border: 1px solid palette(mid); background: palette(button); }"
                                         "QToolButton:pressed, QToolButton:open { background: palette(midlight); }"
                                         "QToolButton:focus { border-color: palette(highlight); }"
                                         "QToolButton::menu-indicator { subcontrol-origin: padding; subcontrol-position: right center; right: 4px; }"));
    auto *menu = new QMenu(button);
    const std::pair<QString, void (ExportActions::*)()> entries[] = {
        {QStringLiteral("Final Cut Pro XML…"), &ExportActions::exportFCPXML},
        {QStringLiteral("Premiere Pro XML…"), &ExportActions::exportXML},
        {QStringLiteral("EDL for DaVinci Resolve…"), &ExportActions::exportEDL},
        {QStringLiteral("Avid Media Composer markers…"), &ExportActions::exportAvidMarkers},
        {QStringLiteral("CSV marker list…"), &ExportActions::exportCSV},
        {QString(), nullptr},
        {QStringLiteral("SubRip subtitles (.srt)…"), &ExportActions::exportSRT},
        {QStringLiteral("WebVTT subtitles (.vtt)…"), &ExportActions::exportWebVTT},
    };
    for (const auto &[text, action] : entries) {
        if (action)
            menu->addAction(text, actions, action);
        else
            menu->addSeparator();
    }
    button->setMenu(menu);
    return button;
}

} // namespace

// An application that opens its document from the hand-off folder; without it the document is
// saved where the user chooses.
struct ExportActions::Handoff {
    QString application;
    QString fileName;
    QString nameFilter;
    QString extension; // forced on a chosen name; empty keeps the name as chosen
    QString missing;   // the save panel's caption when the application is not installed
    bool (EditorHandoff::*installed)() const;
    bool (EditorHandoff::*open)(const QString &document) const;
};

ExportActions::ExportActions(AppState &state, Desktop &desktop, ExportEnvironment environment, SelectsModel &selects, QWidget *parent)
    : QWidget(parent), m_state(state), m_desktop(desktop), m_environment(std::move(environment)), m_selects(selects)
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
    m_selectsButton = Buttons::prominent(QStringLiteral("Open selects in Premiere Pro"), QStringLiteral("film"), Theme::color(Theme::Colour::amber));
    m_selectsButton->setObjectName(QStringLiteral("selectsButton"));
    connect(m_selectsButton, &QPushButton::clicked, this, &ExportActions::exportSelectsToPremiereAction);
    section->addWidget(m_selectsButton);
    column->addWidget(m_selectsSection);

    auto *buttons = new QVBoxLayout;
    buttons->setSpacing(8);
    auto *handoffs = new QWidget;
    handoffs->setObjectName(QStringLiteral("handoffs"));
    m_handoffs = new QVBoxLayout(handoffs);
    m_handoffs->setContentsMargins(0, 0, 0, 0);
    m_handoffs->setSpacing(8);
    m_resolve = Buttons::prominent(QStringLiteral("Open in DaVinci Resolve"), QStringLiteral("play.circle.fill"), Theme::indigo());
    connect(m_resolve, &QPushButton::clicked, this, &ExportActions::openInResolve);
    m_premiere = Buttons::prominent(QStringLiteral("Open in Premiere Pro"), QStringLiteral("play.circle"), Theme::color(Theme::Colour::premiereBlue));
    connect(m_premiere, &QPushButton::clicked, this, &ExportActions::openInPremiere);
    m_finalCut = Buttons::prominent(QStringLiteral("Open in Final Cut Pro"), QStringLiteral("play.circle.fill"), Theme::color(Theme::Colour::charcoal));
    connect(m_finalCut, &QPushButton::clicked, this, &ExportActions::openInFinalCutPro);
    for (QPushButton *handoff : {m_resolve, m_premiere, m_finalCut})
        m_handoffs->addWidget(handoff);
    m_exportMenu = exportMenuButton(this);
    buttons->addWidget(handoffs);
    buttons->addWidget(m_exportMenu);
    column->addLayout(buttons);

    connect(&m_selects, &SelectsModel::selectionChanged, this, &ExportActions::updateSelects);
    connect(&m_state, &AppState::preferredNLEChanged, this, &ExportActions::followPreferredEditor);
    updateSelects();
    followPreferredEditor();
}

void ExportActions::updateSelects()
{
    const qsizetype count = m_selects.selectedSegmentIds().size();
    m_selectsSection->setVisible(count > 0);
    m_selectsCount->setText(selectsCountText(count) + QStringLiteral(" ready to export"));
}

// The preferred application's hand-off comes first, the others keep their order; Final Cut Pro
// has a hand-off only for those who prefer it (its document is in the Export menu for everyone).
void ExportActions::followPreferredEditor()
{
    const QString &preferred = m_state.preferredNLE();
    QPushButton *first = preferred == u"premiere" ? m_premiere : preferred == u"fcp" ? m_finalCut : m_resolve;
    QList<QPushButton *> order{first};
    for (QPushButton *handoff : {m_resolve, m_premiere}) {
        if (handoff != first)
            order.append(handoff);
    }
    for (QPushButton *handoff : order)
        m_handoffs->removeWidget(handoff);
    for (qsizetype i = 0; i < order.size(); ++i)
        m_handoffs->insertWidget(int(i), order.at(i));
    m_finalCut->setVisible(first == m_finalCut);
    // The keyboard walks the buttons in the order they are shown.
    QWidget *previous = m_selectsButton;
    for (QWidget *next : std::as_const(order)) {
        setTabOrder(previous, next);
        previous = next;
    }
    setTabOrder(previous, m_exportMenu);
}

QList<TranscriptSegment> ExportActions::shownTranscript() const
{
    return m_selects.transcript().isEmpty() ? m_session.transcriptSegments : m_selects.transcript();
}

void ExportActions::saveThroughPanel(const QString &document, const SaveRequest &request, const QString &extension, const QString &check,
                                     const QString &note)
{
    const QPointer<ExportActions> self(this);
    m_desktop.chooseSaveFile(request, [self, document, extension, check, note](const QString &path) {
        const ExportReport report = saveDocument(document, extension.isEmpty() ? path : ExportFiles::withExtension(path, extension), check, note);
        if (self)
            Q_EMIT self->reported(report);
    });
}

void ExportActions::handOff(const Handoff &target, const QString &document, const QString &check)
{
    const EditorHandoff handoff = m_environment.handoff();
    if ((handoff.*target.installed)()) {
        const bool written = (handoff.*target.open)(document);
        const QString file = handoff.temporaryFile(target.fileName);
        Q_EMIT reported(written ? ExportReport{withCheck(QStringLiteral("Opened ") + placeOf(file) + QStringLiteral(" in ") + target.application + u'.', check), file}
                                : ExportReport{QStringLiteral("Could not write ") + placeOf(file) + QStringLiteral(" for ") + target.application + u'.', file, true});
        return;
    }
    saveThroughPanel(document, {target.fileName, target.nameFilter, target.missing}, target.extension, check,
                     u' ' + target.application + QStringLiteral(" is not installed here."));
}

void ExportActions::exportEDL()
{
    saveThroughPanel(generateResolveEDL(m_session), {ExportFiles::markersEDL, QString(), QString()}, QStringLiteral("edl"), QString(), QString());
}

void ExportActions::exportXML()
{
    whenBuilt(markerSequenceOnToolPool(m_session, m_environment.tools), [this, check = footageCheck(m_session)](const QString &xml) {
        saveThroughPanel(xml, {ExportFiles::markersXML, xmlFilter, QString()}, QString(), check, QString());
    });
}

// The widget may be gone when the document is ready: the task ends quietly then.
QCoro::Task<> ExportActions::whenBuilt(QFuture<QString> building, std::function<void(const QString &)> use)
{
    const QPointer<ExportActions> self(this);
    const QString document = co_await building;
    if (self)
        use(document);
}

void ExportActions::exportFCPXML()
{
    whenBuilt(finalCutXMLOnToolPool(m_session, m_environment.tools), [this, check = footageCheck(m_session)](const QString &xml) {
        saveThroughPanel(xml, {ExportFiles::markersFCPXML, fcpxmlFilter, QString()}, fcpxmlExtension, check, QString());
    });
}

// The marker lists carry every marker at its own timecode, footage or not: nothing to warn about.
void ExportActions::exportAvidMarkers()
{
    saveThroughPanel(generateAvidMarkerList(m_session), {ExportFiles::markersAvid, QStringLiteral("Text (*.txt)"), QString()}, QStringLiteral("txt"),
                     QString(), QString());
}

void ExportActions::exportCSV()
{
    saveThroughPanel(generateMarkerCSV(m_session), {ExportFiles::markersCSV, QStringLiteral("CSV (*.csv)"), QString()}, QStringLiteral("csv"),
                     QString(), QString());
}

void ExportActions::exportSRT()
{
    const QList<TranscriptSegment> utterances = shownTranscript();
    saveThroughPanel(generateSRT(m_session, utterances), {ExportFiles::transcriptSRT, QStringLiteral("SubRip (*.srt)"), QString()},
                     QStringLiteral("srt"), subtitlesCheck(utterances), QString());
}

void ExportActions::exportWebVTT()
{
    const QList<TranscriptSegment> utterances = shownTranscript();
    saveThroughPanel(generateWebVTT(m_session, utterances), {ExportFiles::transcriptVTT, QStringLiteral("WebVTT (*.vtt)"), QString()},
                     QStringLiteral("vtt"), subtitlesCheck(utterances), QString());
}

void ExportActions::openInPremiere()
{
    whenBuilt(markerSequenceOnToolPool(m_session, m_environment.tools), [this, check = footageCheck(m_session)](const QString &xml) {
        handOff({premierePro, ExportFiles::markersXML, xmlFilter, QString(), premiereMissing, &EditorHandoff::hasPremiere,
                 &EditorHandoff::openInPremiere},
                xml, check);
    });
}

void ExportActions::exportSelectsToPremiereAction()
{
    const Handoff premiere{premierePro, ExportFiles::selectsXML, xmlFilter, QString(), premiereMissing, &EditorHandoff::hasPremiere,
                           &EditorHandoff::openSelectsInPremiere};
    handOff(premiere, generateSelectsXML(m_session, m_selects.selectedSegmentIds(), m_selects.segmentGrades(), m_selects.transcript()), QString());
}

void ExportActions::openInFinalCutPro()
{
    whenBuilt(finalCutXMLOnToolPool(m_session, m_environment.tools), [this, check = footageCheck(m_session)](const QString &xml) {
        handOff({finalCutPro, ExportFiles::markersFCPXML, fcpxmlFilter, fcpxmlExtension, finalCutMissing, &EditorHandoff::hasFinalCutPro,
                 &EditorHandoff::openInFinalCutPro},
                xml, check);
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
