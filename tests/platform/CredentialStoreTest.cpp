#include "platform/CredentialStore.h"

#include <QTest>

// Runs against the user's real secret store (scripts/test.sh provides a throw-away keyring),
// under a service name of its own so the application's login is never touched.
class CredentialStoreTest : public QObject
{
    Q_OBJECT

    const CredentialStore m_store{QStringLiteral("io.vorlix.sync.test-credential-store")};

private Q_SLOTS:
    void init() { m_store.remove(); }
    void cleanupTestCase() { m_store.remove(); }

    void writeReadDelete_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("cookie") << "sid=abc123";
        QTest::newRow("empty") << "";
        QTest::newRow("non-ASCII") << QStringLiteral("sid=caf\u00e9\u2603; x=\U0001F3AC");
    }

    // What is written reads back as written; after a delete nothing is stored, and deleting
    // again is harmless.
    void writeReadDelete()
    {
        QFETCH(QString, text);
        m_store.write(QStringLiteral("sid=first"));
        m_store.write(text);
        QCOMPARE(m_store.read(), std::optional(text));
        m_store.remove();
        QCOMPARE(m_store.read(), std::nullopt);
        m_store.remove();
        QCOMPARE(m_store.read(), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(CredentialStoreTest)
#include "CredentialStoreTest.moc"
