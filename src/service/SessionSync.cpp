#include "service/SessionSync.h"

#include "service/APIService.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"

#include <QPointer>

namespace SessionSync {

QCoro::Task<> syncSessions(AppState &state, APIService &api)
{
    const QPointer<AppState> guard(&state);
    QList<ShootSession> fetched;
    try {
        fetched = co_await api.fetchShootSessions();
    } catch (const APIError &) {
        co_return;
    }
    // A run that outlives a sign-out must not bring the signed-out user's sessions back.
    if (guard && guard->isLoggedIn())
        SessionLibrary(*guard).mergeFetched(fetched);
}

} // namespace SessionSync
