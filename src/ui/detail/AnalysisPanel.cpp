#include "ui/detail/AnalysisPanel.h"

#include "platform/Desktop.h"
#include "ui/detail/AnalysisState.h"
#include "ui/widgets/Buttons.h"
#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QString idleText = QStringLiteral("Analyse Footage with AI");
const QString idleSymbol = QStringLiteral("sparkles");

// The run holds its analysis state, so the screen may switch sessions or close while it goes on.
QCoro::Task<> runHoldingState(AnalysisRunner run, ShootSession session, QList<QUrl> files, std::shared_ptr<AnalysisState> analysis)
{
    co_await run(std::move(session), std::move(files), *analysis);
}

} // namespace

AnalysisPanel::AnalysisPanel(Desktop &desktop, AnalysisRunner run, QWidget *parent)
    : QWidget(parent), m_desktop(desktop), m_run(std::move(run)), m_analysis(std::make_shared<AnalysisState>())
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    m_button = Buttons::prominent(idleText, idleSymbol, Theme::color(Theme::Colour::green));
    m_button->setObjectName(QStringLiteral("analyseButton"));
    connect(m_button, &QPushButton::clicked, this, &AnalysisPanel::analyseFootage);
    m_results = new QWidget;
    m_resultLines = new QVBoxLayout(m_results);
    m_resultLines->setContentsMargins(0, 0, 0, 0);
    m_resultLines->setSpacing(2);
    column->addWidget(m_button);
    column->addWidget(m_results);
    updateAnalysis();
}

void AnalysisPanel::showSession(const ShootSession &session, const std::shared_ptr<AnalysisState> &analysis)
{
    m_session = session;
    if (analysis == m_analysis)
        return;
    disconnect(m_analysis.get(), nullptr, this, nullptr);
    m_analysis = analysis;
    for (auto changed : {&AnalysisState::isAnalysingChanged, &AnalysisState::analyseProgressChanged, &AnalysisState::analyseResultsChanged})
        connect(m_analysis.get(), changed, this, &AnalysisPanel::updateAnalysis);
    updateAnalysis();
}

void AnalysisPanel::updateAnalysis()
{
    const bool running = m_analysis->isAnalysing();
    m_button->setText(running ? m_analysis->analyseProgress() : idleText);
    m_button->setIcon(Icons::symbol(running ? QStringLiteral("waveform") : idleSymbol, Qt::white));
    m_button->setEnabled(!running);
    while (QLayoutItem *item = m_resultLines->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const QString &line : m_analysis->analyseResults()) {
        QLabel *label = Theme::label(line, Theme::TextStyle::Caption, true);
        label->setObjectName(QStringLiteral("analysisResult"));
        label->setWordWrap(true);
        m_resultLines->addWidget(label);
    }
    m_results->setVisible(!m_analysis->analyseResults().isEmpty());
}

void AnalysisPanel::analyseFootage()
{
    QPointer<AnalysisPanel> self(this);
    const QString sessionId = m_session.id;
    m_desktop.chooseFiles({QStringLiteral("Select footage files to analyse"), false}, [self, sessionId](const QList<QUrl> &files) {
        if (self && self->m_session.id == sessionId)
            self->runAnalysis(files);
    });
}

void AnalysisPanel::runAnalysis(const QList<QUrl> &files)
{
    runHoldingState(m_run, m_session, files, m_analysis);
}
