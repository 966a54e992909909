#pragma once

#include <QProcess>

// The stand-in program (its path comes from CTest) as a child process on a free loopback port,
// for the command-line tests, which talk to it from another process.
class StandinProcess
{
public:
    ~StandinProcess()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    // Starts it with the fixed login `code`; false (with a warning) when it did not come up.
    bool start(const QString &code)
    {
        m_process.start(qEnvironmentVariable("VORLIX_STANDIN"), {"--port", "0", "--code", code});
        const QByteArray line = readLine();
        m_url = QString::fromLatin1(line.mid(line.indexOf("http://")));
        if (!line.startsWith("Listening on http://127.0.0.1:"))
            qWarning("the stand-in did not start listening: \"%s\"", line.constData());
        return line.startsWith("Listening on http://127.0.0.1:");
    }

    // Its next line of output, without the line feed; empty when none came within 30 s.
    QByteArray readLine()
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(30000)) {
        }
        return m_process.readLine().trimmed();
    }

    const QString &url() const { return m_url; }

    // `arguments` aimed at this stand-in.
    QStringList withService(const QStringList &arguments) const { return QStringList{QStringLiteral("--service-url"), m_url} + arguments; }

private:
    QProcess m_process;
    QString m_url;
};
