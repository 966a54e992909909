#include "platform/CredentialStore.h"

#include <QEventLoop>
#include <QStringDecoder>
#include <functional>
#include <memory>
#include <qt6keychain/keychain.h>

namespace {

struct DeleteLater {
    void operator()(QObject *object) const { object->deleteLater(); }
};

template<typename Job>
std::unique_ptr<Job, DeleteLater> runJob(const QString &service, const QString &account,
                                         const std::function<void(Job &)> &prepare = {})
{
    std::unique_ptr<Job, DeleteLater> job(new Job(service));
    job->setAutoDelete(false);
    job->setInsecureFallback(false);
    job->setKey(account);
    if (prepare)
        prepare(*job);
    QEventLoop loop;
    bool finished = false;
    QObject::connect(job.get(), &QKeychain::Job::finished, &loop, [&] {
        finished = true;
        loop.quit();
    });
    job->start();
    if (!finished)
        loop.exec();
    return job;
}

} // namespace

CredentialStore::CredentialStore(QString service, QString account)
    : m_service(std::move(service)), m_account(std::move(account))
{
}

std::optional<QString> CredentialStore::read() const
{
    const auto job = runJob<QKeychain::ReadPasswordJob>(m_service, m_account);
    if (job->error() != QKeychain::NoError)
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(job->binaryData());
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

void CredentialStore::write(const QString &text) const
{
    remove();
    const QByteArray bytes = text.toUtf8();
    runJob<QKeychain::WritePasswordJob>(m_service, m_account,
                                        [&](QKeychain::WritePasswordJob &job) { job.setBinaryData(bytes); });
}

void CredentialStore::remove() const
{
    runJob<QKeychain::DeletePasswordJob>(m_service, m_account);
}
