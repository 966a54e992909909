// The sidebar after a sync of a large account: 2,000 sessions over a year regrouped by day and
// the visible rows repainted, as one coalesced refresh does it.
#include "platform/Desktop.h"
#include "platform/IdleDesktop.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "ui/sessions/SessionListView.h"
#include "ui/shell/ShellBackend.h"
#include "ui/widgets/Theme.h"

#include <QListView>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

class IdleBackend : public ShellBackend
{
public:
    QCoro::Task<QString> requestLoginCode(QString) override { co_return QString(); }
    QCoro::Task<LoginOutcome> login(QString, QString) override { co_return LoginOutcome{}; }
    QCoro::Task<> deleteCredential() override { co_return; }
    void syncSessions() override {}
    void scanFootage(const QString &) override {}
    void cancelScan() override {}
    void rescanSavedFolders() override {}
    QCoro::Task<QList<TranscriptSegment>> fetchTranscript(QString) override { co_return QList<TranscriptSegment>{}; }
    QCoro::Task<> runAnalysis(ShootSession, QList<QUrl>, AnalysisState &) override { co_return; }
};

QList<ShootSession> makeSessions(int count, int shift, int idPrefix)
{
    QList<ShootSession> sessions;
    const QDateTime now = QDateTime::currentDateTime();
    for (int i = 0; i < count; ++i) {
        ShootSession session;
        session.id = session.shareToken = QStringLiteral("session-%1-%2").arg(i).arg(idPrefix);
        session.title = QStringLiteral("Shoot %1").arg(i + shift);
        session.createdAt = now.addSecs(-qint64(i) * 4 * 3600 - shift);
        session.markers.resize(40);
        if (i % 3 == 0)
            session.matchedClips.resize(4);
        sessions.append(session);
    }
    return sessions;
}

// range(0) == 0: a sync that changes titles and counts (rows keep their places);
// range(0) == 1: the rows themselves change (new ids), so the list is rebuilt.
void BM_SessionListRegroupAndRedraw(benchmark::State &benchmarkState)
{
    const bool newRows = benchmarkState.range(0) == 1;
    QTemporaryDir dir;
    Preferences preferences(dir.filePath(QStringLiteral("bench.ini")));
    AppState state(preferences);
    Theme::applyAppearance(QStringLiteral("light"));
    IdleBackend backend;
    IdleDesktop desktop;
    SessionListView view(state, backend, desktop, QStringLiteral("shoot.example.org"));
    view.resize(280, 900);
    view.show();
    const QList<ShootSession> variants[] = {makeSessions(2000, 0, 0), makeSessions(2000, 1, newRows ? 1 : 0)};
    int turn = 0;
    for (auto _ : benchmarkState) {
        state.setSessions(variants[turn++ % 2]);
        view.refresh();
        QPixmap frame = view.listView()->viewport()->grab();
        benchmark::DoNotOptimize(frame);
    }
}
BENCHMARK(BM_SessionListRegroupAndRedraw)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace
