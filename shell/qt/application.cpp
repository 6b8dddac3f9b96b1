#include "shell/qt/application.h"

#include <QApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLocale>
#include <QScreen>

#include <sys/utsname.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "base/user_seam.h"
#include "market_data/date.h"
#include "market_data/dbus/dde_bus_transport.h"
#include "shell/core/layout_commands.h"
#include "shell/core/shell_state.h"
#include "shell/core/working_blocks.h"
#include "shell/qt/conversion_wait.h"
#include "shell/qt/database_dialog.h"
#include "shell/qt/dialogs.h"
#include "shell/qt/frame_window.h"
#include "shell/qt/qt_seam.h"

namespace velorin {

const char* InstanceServerName() {
    static const std::string name = "qdx-velorin-" + std::to_string(::getuid());
    return name.c_str();
}

namespace {

// Asks a running instance to come to the front; true when one answered.
bool RaiseRunningInstance() {
    QLocalSocket socket;
    socket.connectToServer(QString::fromLatin1(InstanceServerName()));
    if (!socket.waitForConnected(500)) return false;
    socket.write("raise\n");
    socket.waitForBytesWritten(500);
    socket.disconnectFromServer();
    return true;
}

void BringToFront(FrameWindow* frame) {
    frame->setWindowState(frame->windowState() & ~Qt::WindowMinimized);
    frame->show();
    frame->raise();
    frame->activateWindow();
}

bool DayFirstLocale() {
    // The short date format of the user's locale tells the order; with no
    // locale set (C or POSIX) dates are read month first.
    const QLocale locale = QLocale::system();
    if (locale.language() == QLocale::C) return false;
    const QString f = locale.dateFormat(QLocale::ShortFormat);
    const qsizetype d = f.indexOf(QLatin1Char('d')), m = f.indexOf(QLatin1Char('M'));
    return d >= 0 && m >= 0 && d < m;
}

void ReadMinorVersion() {
    struct utsname u {};
    int major = 0, minor = 0;
    if (::uname(&u) == 0) std::sscanf(u.release, "%d.%d", &major, &minor);
    std::snprintf(shell.osMinorText, sizeof shell.osMinorText, "%d", minor);
}

} // namespace

int RunApplication(int argc, char** argv, const StartOptions& options) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("QDX-Velorin"));
    QtUserSeam seam;
    InstallSeam(&seam);
    InstallDatabaseConnectivity();

    ResetProgramState();
    // Today's date, while the frame does not exist and so no date is "future".
    dateRules.dayFirst = DayFirstLocale();
    dateRules.todayDate = TodayFromClock();

    if (RaiseRunningInstance()) return 0;
    QLocalServer::removeServer(QString::fromLatin1(InstanceServerName()));
    QLocalServer server;
    server.listen(QString::fromLatin1(InstanceServerName()));

    ReadMinorVersion();
    if (!AllocateWorkingBlocks()) return -1;

    char cwd[256];
    if (!::getcwd(cwd, sizeof cwd)) {
        Seam().ShowMessage("Config File Error", "QDX-Velorin", MessageIcon::Stop);
        FreeWorkingBlocks();
        return -1;
    }
    std::snprintf(shell.settingsPath, sizeof shell.settingsPath, "%s/velorin.vln", cwd);
    // Without a settings file this is a first run: empty lists, and the
    // program's own values are written at exit.
    ReadSettingsAtStart();

    // Live feeds come over the session bus; without one every connect is
    // refused and the rest of the program works as before.
    DdeBusTransport liveFeed;
    InstallDdeTransport(&liveFeed);

    int code = 0;
    {
        FrameWindow frame;
        ConversionWait conversionWait(&frame); // the Make All run's wait for its GIFs
        QObject::connect(&server, &QLocalServer::newConnection, &frame, [&server, &frame] {
            while (QLocalSocket* peer = server.nextPendingConnection()) {
                QObject::connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
                BringToFront(&frame);
            }
        });
        {
            StartupDialog startup(nullptr, options.startupMilliseconds);
            startup.exec();
        }
        // The rectangle of the settings file, else the whole screen, so the
        // frame covers it even where no window manager carries out the
        // maximise.
        int x = 0, y = 0, width = 0, height = 0;
        if (SettingsFrameRectangle(&x, &y, &width, &height))
            frame.setGeometry(x, y, width, height);
        else if (const QScreen* screen = QGuiApplication::primaryScreen())
            frame.setGeometry(screen->availableGeometry());
        frame.showMaximized();
        code = QApplication::exec();
    }
    InstallDdeTransport(nullptr);
    InstallSeam(nullptr);
    FreeWorkingBlocks();
    return code;
}

} // namespace velorin
