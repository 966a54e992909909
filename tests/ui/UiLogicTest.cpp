#include "support/TestData.h"
#include "ui/detail/PendingAnalyses.h"
#include "ui/login/LoginRules.h"
#include "ui/sessions/SessionListLogic.h"
#include "ui/settings/SettingsLogic.h"
#include "ui/shell/ServiceLinks.h"

#include <QSignalSpy>

using namespace SessionListLogic;

namespace {

ShootSession session(const char *id, const QDateTime &createdAt = {})
{
    ShootSession s;
    s.id = s.shareToken = QString::fromLatin1(id);
    s.createdAt = createdAt;
    return s;
}

} // namespace

class UiLogicTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loginRules_data() { addCaseRows(QStringLiteral("ui/login-rules.txt")); }
    void loginRules()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        const QString text = QString(input).replace(QLatin1String("\\t"), QLatin1String("\t")).replace(QLatin1String("\\n"), QLatin1String("\n"));
        QStringList accepted;
        if (LoginRules::isValidEmail(text))
            accepted.append(QStringLiteral("address"));
        if (LoginRules::isValidCode(text))
            accepted.append(QStringLiteral("code"));
        QCOMPARE(accepted.isEmpty() ? QStringLiteral("neither") : accepted.join(u" and "), expected);
    }

    void groupsByLocalDayNewestFirst()
    {
        const QDate today(2026, 11, 18);
        const auto at = [](const QDate &date, int hour, int minute) { return QDateTime(date, QTime(hour, minute), Qt::LocalTime); };
        const QList<DayGroup> groups = sessionsByDate({session("late", at(today.addDays(-1), 23, 59)), session("early", at(today, 0, 1)),
                                                       session("older", at(today.addDays(-2), 12, 0)), session("b", at(today, 9, 0)),
                                                       session("a", at(today, 9, 0)), session("noon", at(today, 12, 0))},
                                                      today, QLocale(QLocale::English, QLocale::UnitedKingdom));
        QStringList shown;
        for (const DayGroup &group : groups) {
            shown.append(group.label + u':');
            for (const ShootSession &s : group.sessions)
                shown.append(s.id);
        }
        // Equal times keep their list order.
        QCOMPARE(shown, (QStringList{"Today:", "noon", "b", "a", "early", "Yesterday:", "late", "16 Nov 2026:", "older"}));
        const QLocale us(QLocale::English, QLocale::UnitedStates), german(QLocale::German, QLocale::Germany);
        QCOMPARE((QStringList{us.toString(today, mediumDateFormat(us)), german.toString(today, mediumDateFormat(german))}), (QStringList{"Nov 18, 2026", "18. Nov. 2026"}));
    }

    void initials_data() { addCaseRows(QStringLiteral("ui/initials.txt")); }
    void initials()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        QCOMPARE(SettingsLogic::initials(input.section(QLatin1String(" | "), 0, 0), input.section(QLatin1String(" | "), 1)), expected);
    }

    // A session a sync removed meanwhile: selecting its row shows none.
    void sessionGoneMeanwhile()
    {
        const SelectionEffect effect = selectionEffect({"gone"}, {session("a")});
        QVERIFY(effect.kind == SelectionEffect::Kind::Select && !effect.session);
    }

    void displayNameDeletedOrderAndLinks()
    {
        QCOMPARE((QStringList{SettingsLogic::displayName(QString()), SettingsLogic::displayName(QStringLiteral("  "))}), (QStringList{"User", "  "}));
        const QDateTime t(QDate(2026, 1, 1), QTime(10, 0), Qt::UTC);
        QStringList order;
        for (const DeletedSessionInfo &info : SettingsLogic::newestFirst({{"a", "A", t}, {"b", "B", t.addSecs(60)}, {"c", "C", t}}))
            order.append(info.id);
        QCOMPARE(order, (QStringList{"b", "a", "c"}));
        const ServiceLinks links = ServiceLinks::forBaseUrl(QUrl(QStringLiteral("https://shoot.example.org/api?x=1")));
        QCOMPARE((QStringList{links.domain, links.home.toString(), links.privacyPolicy.toString(), links.terms.toString()}),
                 (QStringList{"shoot.example.org", "https://shoot.example.org/", "https://shoot.example.org/privacy", "https://shoot.example.org/terms"}));
    }

    // Analysis requests wait, in order, until their session's screen takes them, each once.
    void pendingAnalysesWaitForTheirScreen()
    {
        const QList<QUrl> files{QUrl::fromLocalFile("/f/a.mov"), QUrl::fromLocalFile("/f/b.mov")};
        PendingAnalyses pending;
        QSignalSpy requested(&pending, &PendingAnalyses::requested);
        pending.request("S1", files);
        pending.request("S1", files.mid(1));
        QCOMPARE(requested.count(), 2);
        QCOMPARE(requested.first().first().toString(), QStringLiteral("S1"));
        QCOMPARE(pending.take("S2"), std::nullopt);
        QCOMPARE(pending.take("S1"), files);
        QCOMPARE(pending.take("S1"), files.mid(1));
        QCOMPARE(pending.take("S1"), std::nullopt);
        QVERIFY(!pending.hasPending("S1"));
    }
};

QTEST_GUILESS_MAIN(UiLogicTest)
#include "UiLogicTest.moc"
