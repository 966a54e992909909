#include "ui/shell/ContentView.h"
#include "ui/shell/VorlixCompanionApp.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vorlix Sync"));
    QApplication::setOrganizationName(QStringLiteral("Vorlix"));
    QApplication::setOrganizationDomain(QStringLiteral("vorlix.io"));
    QApplication::setApplicationVersion(QStringLiteral(VORLIX_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("io.vorlix.sync"));

    VorlixCompanionApp app(VorlixCompanionApp::parseOptions(QApplication::arguments()));
    app.window().show();
    return QApplication::exec();
}
