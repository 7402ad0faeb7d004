#include "datastore/Conn.h"
#include "HostConfig.h"
#include "HostLog.h"
#include "MainWindow.h"
#include "Startup.h"
#include "UserDialog.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

namespace {

// --help and --version only print: they must work on a machine without a display.
bool onlyPrints(int argc, char* argv[]) {
    for (int i = 1; i < argc; ++i) {
        const QByteArray a(argv[i]);
        if (a == "-h" || a == "--help" || a == "-?" || a == "-v" || a == "--version" ||
            a == "--help-all")
            return true;
    }
    return false;
}

void nameApplication() {
    // No organisation name: the data folder is then ~/.local/share/grainmill, not a nested one.
    QCoreApplication::setApplicationName(QStringLiteral("grainmill"));
    QCoreApplication::setApplicationVersion(QStringLiteral(GRAINMILL_VERSION));
}

} // namespace

int main(int argc, char* argv[]) {
    int exitCode = 0;
    if (onlyPrints(argc, argv)) {
        QCoreApplication core(argc, argv);
        nameApplication();
        gm::host::parseCommandLine(QCoreApplication::arguments(), &exitCode);
        return exitCode;
    }

    QApplication app(argc, argv);
    nameApplication();
    QApplication::setApplicationDisplayName(QStringLiteral("grainmill"));
    gm::host::installMessageHandler();

    const auto options = gm::host::parseCommandLine(QApplication::arguments(), &exitCode);
    if (!options)
        return exitCode;

    gm::host::HostConfig config;
    // A scripted start has nobody to answer a dialog: a failure ends it with the reason.
    const bool interactive = !options->quitAfterStart;
    QString why;
    auto conn = gm::host::openAtStart(*options, config, interactive, &why);
    if (!conn) {
        if (!why.isEmpty())
            std::fprintf(stderr, "%s\n", qPrintable(why));
        return 1;
    }

    qint16 user = options->user.value_or(0);
    if (user == 0) {
        if (!interactive) {
            user = config.lastUser() > 0 ? config.lastUser() : qint16(1);
        } else {
            gm::host::UserDialog dialog(config.lastUser());
            if (dialog.exec() != QDialog::Accepted)
                return 0;
            user = dialog.userNo();
        }
    }
    config.setLastUser(user);

    gm::host::MainWindow window(config, std::move(conn), user);
    window.show();
    if (options->quitAfterStart)
        QTimer::singleShot(0, &window, &QWidget::close);
    return app.exec();
}
