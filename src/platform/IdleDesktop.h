#pragma once

#include "platform/Desktop.h"

// Nobody at the dialogs: for screens drawn without a person in front of them (the screen
// benchmarks, the documentation screenshots), where a panel or an alert must never open.
class IdleDesktop : public Desktop
{
public:
    void chooseFolder(const QString &, std::function<void(const QString &)>) override {}
    void confirm(const Confirmation &, std::function<void()>) override {}
    void openUrl(const QUrl &) override {}
    void chooseSaveFile(const SaveRequest &, std::function<void(const QString &)>) override {}
    void inform(const Notice &, std::function<void()>) override {}
    void chooseFiles(const OpenRequest &, std::function<void(const QList<QUrl> &)>) override {}
    void revealFile(const QString &) override {}
};
