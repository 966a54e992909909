#include "platform/CredentialStore.h"
#include "support/AwaitTask.h"

#include <QTest>

// Runs against the user's real secret store (scripts/test.sh provides a throw-away keyring),
// under a service name and accounts of its own so the application's login is never touched.
class CredentialStoreTest : public QObject
{
    Q_OBJECT

    const CredentialStore m_store{QStringLiteral("io.vorlix.sync.test-credential-store"), QStringLiteral("test-credential-store")};
    const CredentialStore m_neighbour{m_store.service(), QStringLiteral("test-credential-store-neighbour")};

    std::optional<QString> stored() const { return awaitTask(m_store.read()); }

private Q_SLOTS:
    void cleanupTestCase()
    {
        awaitTask(m_store.remove());
        awaitTask(m_neighbour.remove());
    }

    // What is written replaces what was there and reads back as written; after a delete nothing
    // is stored, and deleting again is harmless. Another account of the service is another item.
    void writeReadDelete()
    {
        awaitTask(m_neighbour.write(QStringLiteral("sid=neighbour")));
        for (const QString &text : {QStringLiteral("sid=abc123"), QString(), QStringLiteral("sid=caf\u00e9\u2603; x=\U0001F3AC")}) {
            awaitTask(m_store.write(QStringLiteral("sid=first")));
            awaitTask(m_store.write(text));
            QCOMPARE(stored(), std::optional(text));
            awaitTask(m_store.remove());
            QCOMPARE(stored(), std::nullopt);
            awaitTask(m_store.remove());
            QCOMPARE(stored(), std::nullopt);
        }
        QCOMPARE(awaitTask(m_neighbour.read()), std::optional(QStringLiteral("sid=neighbour")));
    }

    // A call runs to its end without its caller: its task dropped, the store object gone.
    void callsOutliveTheirCaller()
    {
        CredentialStore(m_store.service(), m_store.account()).write(QStringLiteral("sid=dropped"));
        QTRY_COMPARE_WITH_TIMEOUT(stored(), std::optional(QStringLiteral("sid=dropped")), 30000);
        CredentialStore(m_store.service(), m_store.account()).remove();
        QTRY_COMPARE_WITH_TIMEOUT(stored(), std::nullopt, 30000);
    }
};

QTEST_GUILESS_MAIN(CredentialStoreTest)
#include "CredentialStoreTest.moc"
