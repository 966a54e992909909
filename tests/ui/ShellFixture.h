#pragma once

#include "UiTest.h"
#include "platform/Desktop.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "ui/ContentView.h"
#include "ui/ShellBackend.h"
#include "ui/Theme.h"

#include <QTemporaryDir>
#include <deque>
#include <memory>
#include <optional>

// Plays the person at the dialogs: answers folder panels and alerts from a script and keeps
// what was asked.
class ScriptedDesktop : public Desktop
{
public:
    std::deque<std::optional<QString>> folderAnswers; // nullopt: the panel is cancelled
    bool confirmAnswer = true;
    QList<Confirmation> asked;
    QList<QUrl> opened;
    std::deque<std::optional<QString>> saveAnswers; // nullopt: the panel is cancelled
    QList<SaveRequest> saveRequests;
    bool primaryAnswer = false;
    QList<Notice> notices;
    std::deque<QList<QUrl>> fileAnswers; // empty list: the panel is cancelled
    QList<OpenRequest> openRequests;

    // The next scripted answer; with none left the panel is cancelled.
    template <typename T>
    static T next(std::deque<T> &answers)
    {
        T answer{};
        if (!answers.empty()) {
            std::swap(answer, answers.front());
            answers.pop_front();
        }
        return answer;
    }

    void chooseFolder(const QString &, std::function<void(const QString &)> onChosen) override
    {
        if (const std::optional<QString> answer = next(folderAnswers))
            onChosen(*answer);
    }
    void confirm(const Confirmation &question, std::function<void()> onConfirmed) override
    {
        asked.append(question);
        if (confirmAnswer)
            onConfirmed();
    }
    void openUrl(const QUrl &url) override { opened.append(url); }
    void chooseSaveFile(const SaveRequest &request, std::function<void(const QString &)> onChosen) override
    {
        saveRequests.append(request);
        if (const std::optional<QString> answer = next(saveAnswers))
            onChosen(*answer);
    }
    void inform(const Notice &notice, std::function<void()> onPrimary) override
    {
        notices.append(notice);
        if (primaryAnswer)
            onPrimary();
    }
    void chooseFiles(const OpenRequest &request, std::function<void(const QList<QUrl> &)> onChosen) override
    {
        openRequests.append(request);
        if (const QList<QUrl> answer = next(fileAnswers); !answer.isEmpty())
            onChosen(answer);
    }
};

inline ShootSession makeSession(const QString &id, const QString &title, const QDateTime &createdAt)
{
    ShootSession session;
    session.id = session.shareToken = id;
    session.title = title;
    session.createdAt = createdAt;
    return session;
}

// A temporary preferences file, the state on it, and (once a backend exists) a main window.
struct ShellFixture {
    ShellFixture() : preferences(dir.filePath(QStringLiteral("settings.ini"))), state(preferences)
    {
        state.setAppearanceHandler([](const QString &appearance) { Theme::applyAppearance(appearance); });
    }

    void open(ShellBackend &backend, const QUrl &serviceUrl = QUrl(QStringLiteral("http://127.0.0.1:8765")))
    {
        window = std::make_unique<ContentView>(state, backend, desktop, ServiceLinks::forBaseUrl(serviceUrl));
        window->show();
    }

    QTemporaryDir dir;
    Preferences preferences;
    AppState state;
    ScriptedDesktop desktop;
    std::unique_ptr<ContentView> window;
};
