#include "ui/LoginRules.h"
#include "ui/ServiceLinks.h"
#include "ui/SessionListLogic.h"
#include "ui/SettingsLogic.h"

#include <QTest>

using namespace SessionListLogic;

namespace {

ShootSession session(const QString &id, const QDateTime &createdAt, const QString &title = QStringLiteral("Shoot session"))
{
    ShootSession s;
    s.id = s.shareToken = id;
    s.title = title;
    s.createdAt = createdAt;
    return s;
}

QDateTime local(const QDate &date, const QTime &time)
{
    return QDateTime(date, time, Qt::LocalTime);
}

QStringList ids(const QList<ShootSession> &sessions)
{
    QStringList result;
    for (const ShootSession &s : sessions)
        result.append(s.id);
    return result;
}

} // namespace

class UiLogicTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void validEmail_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");
        QTest::newRow("plain") << "anna@example.com" << true;
        QTest::newRow("blanks around") << " \tanna@example.com \t" << true;
        QTest::newRow("dot before at") << "anna.b@localhost" << true;
        QTest::newRow("no dot") << "anna@localhost" << false;
        QTest::newRow("no at") << "anna.example.com" << false;
        QTest::newRow("only blanks") << " \t " << false;
        QTest::newRow("bare symbols") << ".@" << true;
        QTest::newRow("inner newline still counts") << "a@b\n.c" << true;
    }
    void validEmail()
    {
        QFETCH(QString, text);
        QFETCH(bool, valid);
        QCOMPARE(LoginRules::isValidEmail(text), valid);
    }

    void validCode_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");
        QTest::newRow("six digits") << "123456" << true;
        QTest::newRow("five") << "12345" << false;
        QTest::newRow("seven") << "1234567" << false;
        QTest::newRow("letter") << "12a456" << false;
        QTest::newRow("arabic-indic") << QString::fromUtf8("١٢٣٤٥٦") << true;
        QTest::newRow("vulgar fraction") << QString::fromUtf8("12345½") << true;
        QTest::newRow("combining mark is one character") << QString::fromUtf8("12345") + QStringLiteral("6\u0301") << true;
        QTest::newRow("empty") << "" << false;
    }
    void validCode()
    {
        QFETCH(QString, text);
        QFETCH(bool, valid);
        QCOMPARE(LoginRules::isValidCode(text), valid);
    }

    void groupsByLocalDayNewestFirst()
    {
        const QDate today(2026, 11, 18);
        const QList<ShootSession> sessions{
            session(QStringLiteral("late"), local(today.addDays(-1), QTime(23, 59))),
            session(QStringLiteral("early"), local(today, QTime(0, 1))),
            session(QStringLiteral("older"), local(today.addDays(-2), QTime(12, 0))),
            session(QStringLiteral("noon"), local(today, QTime(12, 0))),
        };
        const QList<DayGroup> groups = sessionsByDate(sessions, today, QLocale(QLocale::English, QLocale::UnitedKingdom));
        QCOMPARE(groups.size(), 3);
        QCOMPARE(groups[0].label, QStringLiteral("Today"));
        QCOMPARE(ids(groups[0].sessions), (QStringList{"noon", "early"}));
        QCOMPARE(groups[1].label, QStringLiteral("Yesterday"));
        QCOMPARE(ids(groups[1].sessions), QStringList{"late"});
        QCOMPARE(groups[2].label, QStringLiteral("16 Nov 2026"));
    }

    void equalTimesKeepListOrder()
    {
        const QDate today(2026, 11, 18);
        const QDateTime same = local(today, QTime(9, 0));
        const QList<ShootSession> sessions{session("b", same), session("a", same), session("c", local(today, QTime(10, 0)))};
        QCOMPARE(ids(sessionsByDate(sessions, today, QLocale::c()).constFirst().sessions), (QStringList{"c", "b", "a"}));
        QVERIFY(sessionsByDate({}, today, QLocale::c()).isEmpty());
    }

    void mediumDateFollowsLocale()
    {
        const QLocale us(QLocale::English, QLocale::UnitedStates), german(QLocale::German, QLocale::Germany);
        QCOMPARE(us.toString(QDate(2026, 11, 16), mediumDateFormat(us)), QStringLiteral("Nov 16, 2026"));
        QCOMPARE(german.toString(QDate(2026, 11, 16), mediumDateFormat(german)), QStringLiteral("16. Nov. 2026"));
    }

    // Ids no longer listed and an empty selection; the usual texts are checked on the list itself.
    void deleteAlertTextsAtTheEdges()
    {
        const QList<ShootSession> sessions{session("a", {}), session("b", {})};
        QCOMPARE(deleteAlertTitle({"zz"}), QStringLiteral("Delete session?"));
        QCOMPARE(deleteAlertMessage({"zz"}, sessions), QStringLiteral("Are you sure you want to delete 1 sessions? This can't be undone."));
        QCOMPARE(deleteAlertTitle({}), QStringLiteral("Delete 0 sessions?"));
        QCOMPARE(deleteAlertMessage({}, sessions), QStringLiteral("Are you sure you want to delete 0 sessions? This can't be undone."));
    }

    void selectionEffects()
    {
        const QList<ShootSession> sessions{session("a", {}), session("b", {})};
        const SelectionEffect one = selectionEffect({"b"}, sessions);
        QCOMPARE(one.kind, SelectionEffect::Kind::Select);
        QCOMPARE(one.session->id, QStringLiteral("b"));
        const SelectionEffect missing = selectionEffect({"gone"}, sessions);
        QCOMPARE(missing.kind, SelectionEffect::Kind::Select);
        QVERIFY(!missing.session);
        QCOMPARE(selectionEffect({}, sessions).kind, SelectionEffect::Kind::Clear);
        QCOMPARE(selectionEffect({"a", "b"}, sessions).kind, SelectionEffect::Kind::Keep);
    }

    void initials_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("initials");
        QTest::newRow("three words") << "anna maria smith" << "" << "AM";
        QTest::newRow("one word") << "anna" << "x@y.z" << "A";
        QTest::newRow("email") << "" << "jo@example.com" << "J";
        QTest::newRow("both empty") << "" << "" << "";
        QTest::newRow("blanks only name") << "   " << "jo@example.com" << "";
        QTest::newRow("extra blanks") << "  ella   fitz " << "" << "EF";
    }
    void initials()
    {
        QFETCH(QString, name);
        QFETCH(QString, email);
        QFETCH(QString, initials);
        QCOMPARE(SettingsLogic::initials(name, email), initials);
    }

    void displayNameAndDeletedOrder()
    {
        QCOMPARE(SettingsLogic::displayName(QString()), QStringLiteral("User"));
        QCOMPARE(SettingsLogic::displayName(QStringLiteral("  ")), QStringLiteral("  "));
        const QDateTime t(QDate(2026, 1, 1), QTime(10, 0), Qt::UTC);
        const QList<DeletedSessionInfo> ordered = SettingsLogic::newestFirst({{"a", "A", t}, {"b", "B", t.addSecs(60)}, {"c", "C", t}});
        QCOMPARE(ordered[0].id, QStringLiteral("b"));
        QCOMPARE(ordered[1].id, QStringLiteral("a"));
        QCOMPARE(ordered[2].id, QStringLiteral("c"));
    }

    void serviceLinks()
    {
        const ServiceLinks links = ServiceLinks::forBaseUrl(QUrl(QStringLiteral("https://shoot.example.org/api?x=1")));
        QCOMPARE(links.domain, QStringLiteral("shoot.example.org"));
        QCOMPARE(links.home.toString(), QStringLiteral("https://shoot.example.org/"));
        QCOMPARE(links.privacyPolicy.toString(), QStringLiteral("https://shoot.example.org/privacy"));
        QCOMPARE(links.terms.toString(), QStringLiteral("https://shoot.example.org/terms"));
    }
};

QTEST_GUILESS_MAIN(UiLogicTest)
#include "UiLogicTest.moc"
