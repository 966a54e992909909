#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <utility>

class QHttpServerResponder;

// One HTTP answer as data, so that routes (and the tests' scripted servers) can build it freely
// and one function writes it.
struct HttpAnswer {
    int status = 200;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;

    static HttpAnswer json(const QJsonObject &object, int status = 200)
    {
        return {status, {{"Content-Type", "application/json"}}, QJsonDocument(object).toJson(QJsonDocument::Compact)};
    }

    // Writes status line, headers, Content-Length and body.
    void writeTo(QHttpServerResponder &responder) const;
};
