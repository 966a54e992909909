#include "model/RecordJson.h"
#include "service/ServiceJson.h"
#include "ServiceTestSupport.h"

#include <QJsonDocument>
#include <QRegularExpression>

namespace {

// The records' reference date, so that "now" reads as 0 in their JSON form.
const QDateTime fetchTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);

QJsonValue orNull(const std::optional<QString> &text)
{
    return text ? QJsonValue(*text) : QJsonValue();
}

// What the reading named by the case's input key gives, as JSON.
QJsonValue read(const QJsonObject &data)
{
    if (data.contains(QLatin1StringView("date"))) {
        const auto date = ServiceJson::parseInternetDate(data["date"].toString());
        return date ? QJsonValue(date->toString(Qt::ISODate)) : QJsonValue();
    }
    if (data.contains(QLatin1StringView("marker")))
        return RecordJson::toJson(ServiceJson::markerFromService(data["marker"].toObject(), fetchTime));
    if (data.contains(QLatin1StringView("sessions")))
        return RecordJson::toJsonArray(ServiceJson::sessionsFromAnswer(data["sessions"].toObject(), fetchTime));
    if (data.contains(QLatin1StringView("transcript")))
        return RecordJson::toJsonArray(ServiceJson::transcriptFromAnswer(data["transcript"].toObject()));
    const QJsonObject answer = data["login"].toObject();
    const auto setCookie = data["setCookie"].isString() ? std::optional(data["setCookie"].toString().toUtf8()) : std::nullopt;
    const LoginResult user = ServiceJson::loginResultFromAnswer(answer, QStringLiteral("typed@x.org"));
    return QJsonObject{{"codeRefusal", orNull(ServiceJson::loginCodeRefusal(answer))},
                       {"refusal", orNull(ServiceJson::loginRefusal(answer))},
                       {"credential", orNull(ServiceJson::credentialFromAnswer(answer, setCookie))},
                       {"user", QJsonObject{{"name", user.name}, {"email", user.email}}}};
}

// Compact, with fresh UUIDs written "uuid".
QString json(const QJsonValue &value)
{
    static const QRegularExpression uuid(QStringLiteral("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}"));
    return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact)).replace(uuid, QStringLiteral("uuid"));
}

} // namespace

// The readings of the service's answers (dates, records, login answers), case by case from the
// data file.
class ServiceJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readings_data() { addJsonCases(QStringLiteral("service/service-answers.json"), QStringLiteral("readings")); }

    void readings()
    {
        QFETCH(QJsonObject, data);
        QCOMPARE(json(read(data)), json(data["expected"]));
    }
};

QTEST_GUILESS_MAIN(ServiceJsonTest)
#include "ServiceJsonTest.moc"
