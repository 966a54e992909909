#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

struct AnalysisUpdate;

// What the detail screen shows of a session's analysis. Lives on the GUI thread; every assignment
// emits its change signal.
class AnalysisState : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool isAnalysing() const { return m_isAnalysing; }
    const QString &analyseProgress() const { return m_analyseProgress; }
    const QStringList &analyseResults() const { return m_analyseResults; }

    void setAnalysing(bool value);
    void setAnalyseProgress(const QString &value);
    void setAnalyseResults(const QStringList &value);
    void appendAnalyseResult(const QString &line);
    // Takes over where a run stands, assigning only what changed.
    void apply(const AnalysisUpdate &update);

Q_SIGNALS:
    void isAnalysingChanged();
    void analyseProgressChanged();
    void analyseResultsChanged();

private:
    bool m_isAnalysing = false;
    QString m_analyseProgress;
    QStringList m_analyseResults;
};
