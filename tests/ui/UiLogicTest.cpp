#include "ui/LoginRules.h"
#include "ui/ServiceLinks.h"
#include "ui/SessionListLogic.h"
#include "ui/SettingsLogic.h"

#include <QTest>

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
    void loginRules_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("email");
        QTest::addColumn<bool>("code");
        QTest::newRow("address") << "anna@example.com" << true << false;
        QTest::newRow("blanks around") << " \tanna@example.com \t" << true << false;
        QTest::newRow("dot before at") << "anna.b@localhost" << true << false;
        QTest::newRow("no dot after at") << "anna@localhost" << false << false;
        QTest::newRow("no at") << "anna.example.com" << false << false;
        QTest::newRow("bare symbols") << ".@" << true << false;
        QTest::newRow("inner newline still counts") << "a@b\n.c" << true << false;
        QTest::newRow("six digits") << "123456" << false << true;
        QTest::newRow("five") << "12345" << false << false;
        QTest::newRow("seven") << "1234567" << false << false;
        QTest::newRow("letter") << "12a456" << false << false;
        QTest::newRow("arabic-indic") << QString::fromUtf8("١٢٣٤٥٦") << false << true;
        QTest::newRow("vulgar fraction") << QString::fromUtf8("12345½") << false << true;
        QTest::newRow("combining mark is one character") << QStringLiteral("123456\u0301") << false << true;
        QTest::newRow("only blanks") << " \t " << false << false;
    }
    void loginRules()
    {
        QFETCH(QString, text);
        QFETCH(bool, email);
        QFETCH(bool, code);
        QCOMPARE(LoginRules::isValidEmail(text), email);
        QCOMPARE(LoginRules::isValidCode(text), code);
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
        QVERIFY(sessionsByDate({}, today, QLocale::c()).isEmpty());
        const QLocale us(QLocale::English, QLocale::UnitedStates), german(QLocale::German, QLocale::Germany);
        QCOMPARE(us.toString(today, mediumDateFormat(us)), QStringLiteral("Nov 18, 2026"));
        QCOMPARE(german.toString(today, mediumDateFormat(german)), QStringLiteral("18. Nov. 2026"));
    }

    // Ids no longer listed and an empty selection; the usual texts are checked on the list itself.
    void deleteAlertTextsAtTheEdges()
    {
        const QList<ShootSession> sessions{session("a"), session("b")};
        QCOMPARE(deleteAlertTitle({"zz"}), QStringLiteral("Delete session?"));
        QCOMPARE(deleteAlertMessage({"zz"}, sessions), QStringLiteral("Are you sure you want to delete 1 sessions? This can't be undone."));
        QCOMPARE(deleteAlertTitle({}), QStringLiteral("Delete 0 sessions?"));
        QCOMPARE(deleteAlertMessage({}, sessions), QStringLiteral("Are you sure you want to delete 0 sessions? This can't be undone."));
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
        QStringList order;
        for (const DeletedSessionInfo &info : SettingsLogic::newestFirst({{"a", "A", t}, {"b", "B", t.addSecs(60)}, {"c", "C", t}}))
            order.append(info.id);
        QCOMPARE(order, (QStringList{"b", "a", "c"}));
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
