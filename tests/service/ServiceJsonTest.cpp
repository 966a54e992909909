#include "ServiceTestSupport.h"
#include "model/RecordJson.h"
#include "service/ServiceJson.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

// The readings of the service's answers, case by case from the data file.
namespace {

// The records' reference date, so that "now" reads as 0 in their JSON form.
const QDateTime fetchTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);

// Compact, with fresh UUIDs written "uuid".
QString json(const QJsonValue &value)
{
    static const QRegularExpression uuid(QStringLiteral("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}"));
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    return QString::fromUtf8(document.toJson(QJsonDocument::Compact)).replace(uuid, QStringLiteral("uuid"));
}

QJsonValue orNull(const std::optional<QString> &text)
{
    return text ? QJsonValue(*text) : QJsonValue();
}

} // namespace

class ServiceJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void internetDates_data() { addServiceCases(QLatin1StringView("dates")); }

    void internetDates()
    {
        QFETCH(QJsonObject, data);
        const auto parsed = ServiceJson::parseInternetDate(data["text"].toString());
        QCOMPARE(parsed ? parsed->toString(Qt::ISODate) : QStringLiteral("null"), data["date"].toString(QStringLiteral("null")));
    }

    void records_data() { addServiceCases(QLatin1StringView("records")); }

    void records()
    {
        QFETCH(QJsonObject, data);
        QJsonValue mapped;
        if (data.contains(QLatin1StringView("marker")))
            mapped = RecordJson::toJson(ServiceJson::markerFromService(data["marker"].toObject(), fetchTime));
        else if (data.contains(QLatin1StringView("sessions")))
            mapped = RecordJson::toJsonArray(ServiceJson::sessionsFromAnswer(data["sessions"].toObject(), fetchTime));
        else
            mapped = RecordJson::toJsonArray(ServiceJson::transcriptFromAnswer(data["transcript"].toObject()));
        QCOMPARE(json(mapped), json(data["expected"]));
    }

    // The code request's and the code check's refusal, the credential kept and the user shown
    // ("typed@x.org" as typed).
    void loginAnswers_data() { addServiceCases(QLatin1StringView("logins")); }

    void loginAnswers()
    {
        QFETCH(QJsonObject, data);
        const QJsonObject answer = data["answer"].toObject();
        const QJsonValue setCookie = data["setCookie"];
        const LoginResult user = ServiceJson::loginResultFromAnswer(answer, QStringLiteral("typed@x.org"));
        const QJsonObject read{
            {"codeRefusal", orNull(ServiceJson::loginCodeRefusal(answer))},
            {"refusal", orNull(ServiceJson::loginRefusal(answer))},
            {"credential", orNull(ServiceJson::credentialFromAnswer(answer, setCookie.isString() ? std::optional(setCookie.toString().toUtf8()) : std::nullopt))},
            {"user", QJsonObject{{"name", user.name}, {"email", user.email}}}};
        for (const char *key : {"name", "answer", "setCookie"})
            data.remove(QLatin1StringView(key));
        QCOMPARE(json(read), json(data));
    }
};

QTEST_GUILESS_MAIN(ServiceJsonTest)
#include "ServiceJsonTest.moc"
