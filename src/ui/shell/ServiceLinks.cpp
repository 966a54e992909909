#include "ui/shell/ServiceLinks.h"

ServiceLinks ServiceLinks::forBaseUrl(const QUrl &baseUrl)
{
    QUrl home = baseUrl;
    home.setPath(QStringLiteral("/"));
    home.setQuery(QString());
    home.setFragment(QString());
    ServiceLinks links;
    links.home = home;
    links.privacyPolicy = home.resolved(QUrl(QStringLiteral("privacy")));
    links.terms = home.resolved(QUrl(QStringLiteral("terms")));
    links.domain = home.host();
    return links;
}
