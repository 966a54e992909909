#include "ui/detail/AnalysisState.h"

#include "analysis/AnalysisService.h"

void AnalysisState::setAnalysing(bool value)
{
    m_isAnalysing = value;
    Q_EMIT isAnalysingChanged();
}

void AnalysisState::setAnalyseProgress(const QString &value)
{
    m_analyseProgress = value;
    Q_EMIT analyseProgressChanged();
}

void AnalysisState::setAnalyseResults(const QStringList &value)
{
    m_analyseResults = value;
    Q_EMIT analyseResultsChanged();
}

void AnalysisState::appendAnalyseResult(const QString &line)
{
    m_analyseResults.append(line);
    Q_EMIT analyseResultsChanged();
}

void AnalysisState::apply(const AnalysisUpdate &update)
{
    if (update.running != m_isAnalysing)
        setAnalysing(update.running);
    if (update.progress != m_analyseProgress)
        setAnalyseProgress(update.progress);
    if (update.results != m_analyseResults)
        setAnalyseResults(update.results);
}
