#include "service/ServiceUrl.h"

#include <QProcessEnvironment>

QString resolveServiceUrl(const std::optional<QString> &commandLineValue)
{
    QString url = commandLineValue.value_or(
        QProcessEnvironment::systemEnvironment().value(QStringLiteral("VORLIX_SERVICE_URL")));
    if (!commandLineValue && url.isEmpty())
        url = QStringLiteral(VORLIX_DEFAULT_SERVICE_URL);
    while (url.endsWith(QLatin1Char('/')))
        url.chop(1);
    return url;
}
