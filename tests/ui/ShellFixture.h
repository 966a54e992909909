#pragma once

#include "export/RecordingWorkspace.h"
#include "platform/Desktop.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "ui/shell/ContentView.h"
#include "ui/shell/ShellBackend.h"
#include "ui/widgets/Theme.h"

#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <memory>

// How long a screen test waits for what it expects. A met wait ends at once; the limits are
// generous because HTTP, the keyring, ffmpeg and window events share a two-core machine with
// other test programs.
constexpr int screenWait = 30000;
constexpr int toolWait = 60000; // ffmpeg and ffprobe runs

// The first widget or action under `root` showing `text`, or null.
template <typename Item = QPushButton>
Item *withText(const QObject *root, const QString &text)
{
    const QList<Item *> items = root->findChildren<Item *>();
    const auto found = std::find_if(items.cbegin(), items.cend(), [&](const Item *item) { return item->text() == text; });
    return found == items.cend() ? nullptr : *found;
}

// Plays the person at the dialogs: answers panels and alerts from a script and writes down what
// was asked, one line each. A panel whose answer is empty, or that has none left, is cancelled.
class ScriptedDesktop : public Desktop
{
public:
    QStringList asked;
    QStringList folderAnswers;
    QStringList saveAnswers;
    QList<QList<QUrl>> fileAnswers;
    bool confirmAnswer = true;
    bool primaryAnswer = false;

    void chooseFolder(const QString &message, std::function<void(const QString &)> onChosen) override
    {
        asked.append("folder: " + message);
        if (const QString answer = folderAnswers.isEmpty() ? QString() : folderAnswers.takeFirst(); !answer.isEmpty())
            onChosen(answer);
    }
    void confirm(const Confirmation &question, std::function<void()> onConfirmed) override
    {
        asked.append("confirm: " + question.title + " | " + question.message + " | " + question.confirmLabel);
        if (confirmAnswer)
            onConfirmed();
    }
    void openUrl(const QUrl &url) override { asked.append("browser: " + url.toString()); }
    void chooseSaveFile(const SaveRequest &request, std::function<void(const QString &)> onChosen) override
    {
        asked.append("save: " + request.defaultName + (request.caption.isEmpty() ? QString() : " | " + request.caption));
        if (const QString answer = saveAnswers.isEmpty() ? QString() : saveAnswers.takeFirst(); !answer.isEmpty())
            onChosen(answer);
    }
    void inform(const Notice &notice, std::function<void()> onPrimary) override
    {
        asked.append("notice: " + notice.title + " | " + notice.message + " | " + notice.primaryLabel + " | " + notice.secondaryLabel);
        if (primaryAnswer)
            onPrimary();
    }
    void chooseFiles(const OpenRequest &request, std::function<void(const QList<QUrl> &)> onChosen) override
    {
        asked.append((request.allowsFolders ? "files or folders: " : "files: ") + request.message);
        if (const QList<QUrl> answer = fileAnswers.isEmpty() ? QList<QUrl>() : fileAnswers.takeFirst(); !answer.isEmpty())
            onChosen(answer);
    }
    void revealFile(const QString &path) override { asked.append("reveal: " + path); }
};

inline ShootSession makeSession(const QString &id, const QString &title, const QDateTime &createdAt)
{
    ShootSession session;
    session.id = session.shareToken = id;
    session.title = title;
    session.createdAt = createdAt;
    return session;
}

// The state's clock: noon, so that sessions a few minutes older are still "Today".
inline const QDateTime shellNow(QDate(2026, 11, 18), QTime(12, 0));

// A temporary preferences file, the state on it, and (once a backend exists) a main window whose
// exports write into the temporary folder.
struct ShellFixture {
    ShellFixture() : preferences(dir.filePath("settings.ini")), state(preferences, nullptr, [] { return shellNow.toUTC(); })
    {
        state.setAppearanceHandler([](const QString &appearance) { Theme::applyAppearance(appearance); });
    }

    void open(ShellBackend &backend, const QUrl &serviceUrl = QUrl("http://127.0.0.1:8765"))
    {
        window = std::make_unique<ContentView>(state, backend, desktop, ServiceLinks::forBaseUrl(serviceUrl),
                                               ExportEnvironment{workspace, dir.path(), EditorLocations{}, ToolLocations::platformDefault()});
        window->show();
    }

    QTemporaryDir dir;
    Preferences preferences;
    AppState state;
    ScriptedDesktop desktop;
    std::shared_ptr<RecordingWorkspace> workspace = std::make_shared<RecordingWorkspace>(); // no editing application here
    std::unique_ptr<ContentView> window;
};
