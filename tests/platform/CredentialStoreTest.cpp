#include "platform/CredentialStore.h"

#include <QTest>

// Runs against the user's real secret store (scripts/test.sh provides a throw-away keyring),
// under a service name and accounts of its own so the application's login is never touched.
class CredentialStoreTest : public QObject
{
    Q_OBJECT

    const CredentialStore m_store{QStringLiteral("io.vorlix.sync.test-credential-store"), QStringLiteral("test-credential-store")};
    const CredentialStore m_neighbour{m_store.service(), QStringLiteral("test-credential-store-neighbour")};

private Q_SLOTS:
    void cleanupTestCase()
    {
        m_store.remove();
        m_neighbour.remove();
    }

    // What is written replaces what was there and reads back as written; after a delete nothing
    // is stored, and deleting again is harmless. Another account of the service is another item.
    void writeReadDelete()
    {
        m_neighbour.write(QStringLiteral("sid=neighbour"));
        for (const QString &text : {QStringLiteral("sid=abc123"), QString(), QStringLiteral("sid=caf\u00e9\u2603; x=\U0001F3AC")}) {
            m_store.write(QStringLiteral("sid=first"));
            m_store.write(text);
            QCOMPARE(m_store.read(), std::optional(text));
            m_store.remove();
            QCOMPARE(m_store.read(), std::nullopt);
            m_store.remove();
            QCOMPARE(m_store.read(), std::nullopt);
        }
        QCOMPARE(m_neighbour.read(), std::optional(QStringLiteral("sid=neighbour")));
    }
};

QTEST_GUILESS_MAIN(CredentialStoreTest)
#include "CredentialStoreTest.moc"
