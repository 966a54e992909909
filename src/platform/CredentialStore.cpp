#include "platform/CredentialStore.h"

#include <QCoro/QCoroSignal>
#include <QStringDecoder>
#include <qt6keychain/keychain.h>

namespace {

// A job for the one item. It deletes itself after `finished`, never before: the Secret Service's
// answer still refers to it while it runs, so its life cannot end with a coroutine that stops
// waiting for it.
template<typename Job>
Job *newJob(const QString &service, const QString &account)
{
    auto *job = new Job(service);
    job->setAutoDelete(true);
    job->setInsecureFallback(false);
    job->setKey(account);
    return job;
}

QCoro::Task<> finished(QKeychain::Job *job)
{
    auto signal = qCoro(job, &QKeychain::Job::finished);
    co_await signal;
}

// Resumes once `job` has finished; it is still alive then, since its deletion is queued after
// the resumption. The wait is set up before the start, though start() only queues the job.
QCoro::Task<> run(QKeychain::Job *job)
{
    QCoro::Task<> done = finished(job);
    job->start();
    co_await std::move(done);
}

// The calls take the item by value so that a started call never refers to the store object.
QCoro::Task<std::optional<QString>> readItem(QString service, QString account)
{
    auto *job = newJob<QKeychain::ReadPasswordJob>(service, account);
    QCoro::Task<> done = run(job);
    co_await std::move(done);
    if (job->error() != QKeychain::NoError)
        co_return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(job->binaryData());
    if (decoder.hasError())
        co_return std::nullopt;
    co_return text;
}

QCoro::Task<> removeItem(QString service, QString account)
{
    QCoro::Task<> done = run(newJob<QKeychain::DeletePasswordJob>(service, account));
    co_await std::move(done);
}

QCoro::Task<> writeItem(QString service, QString account, QString text)
{
    QCoro::Task<> removal = removeItem(service, account);
    co_await std::move(removal);
    auto *job = newJob<QKeychain::WritePasswordJob>(service, account);
    job->setBinaryData(text.toUtf8());
    QCoro::Task<> done = run(job);
    co_await std::move(done);
}

} // namespace

CredentialStore::CredentialStore(QString service, QString account)
    : m_service(std::move(service)), m_account(std::move(account))
{
}

QCoro::Task<std::optional<QString>> CredentialStore::read() const
{
    return readItem(m_service, m_account);
}

QCoro::Task<> CredentialStore::write(QString text) const
{
    return writeItem(m_service, m_account, std::move(text));
}

QCoro::Task<> CredentialStore::remove() const
{
    return removeItem(m_service, m_account);
}
