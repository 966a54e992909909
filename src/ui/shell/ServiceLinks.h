#pragma once

#include <QString>
#include <QUrl>

// The service's web pages and the domain shown beside them, derived from the base URL the
// program talks to, so a deployment configures one address.
struct ServiceLinks {
    QUrl home;
    QUrl privacyPolicy;
    QUrl terms;
    QString domain;

    static ServiceLinks forBaseUrl(const QUrl &baseUrl);
};
