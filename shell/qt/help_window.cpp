#include "shell/qt/help_window.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "base/user_seam.h"

namespace velorin {

QString HelpIndexPath(const QString& programDir) {
    const QDir dir(programDir);
    for (const QString& relative :
         {QStringLiteral("help/index.html"), QStringLiteral("../share/velorin/help/index.html")}) {
        const QFileInfo page(dir.filePath(relative));
        if (page.isFile()) return page.canonicalFilePath();
    }
    return QString();
}

HelpWindow::HelpWindow(const QString& indexPath, QWidget* parent)
    : QWidget(parent, Qt::Window), indexPath_(indexPath) {
    setObjectName(QStringLiteral("helpWindow"));
    setWindowTitle(QStringLiteral("QDX-Velorin Help"));
    setAttribute(Qt::WA_DeleteOnClose, false);

    auto* contents = new QPushButton(QStringLiteral("&Contents"), this);
    auto* back = new QPushButton(QStringLiteral("&Back"), this);
    auto* forward = new QPushButton(QStringLiteral("&Forward"), this);
    browser_ = new QTextBrowser(this);
    browser_->setOpenExternalLinks(true);
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(contents, &QPushButton::clicked, this, &HelpWindow::ShowContents);
    connect(back, &QPushButton::clicked, browser_, &QTextBrowser::backward);
    connect(forward, &QPushButton::clicked, browser_, &QTextBrowser::forward);
    connect(browser_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    connect(browser_, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);
    connect(browser_, &QTextBrowser::sourceChanged, this, [this] {
        const QString title = browser_->documentTitle();
        setWindowTitle(title.isEmpty() ? QStringLiteral("QDX-Velorin Help")
                                       : QStringLiteral("QDX-Velorin Help - %1").arg(title));
    });

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(contents);
    buttons->addWidget(back);
    buttons->addWidget(forward);
    buttons->addStretch(1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addWidget(browser_, 1);
    // A comfortable page, within the screen.
    QSize size(760, 620);
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        size = size.boundedTo(screen->availableGeometry().size() * 9 / 10);
    resize(size);
    ShowContents();
}

void HelpWindow::ShowContents() {
    browser_->setSource(QUrl::fromLocalFile(indexPath_));
}

HelpWindow* OpenHelpContents(QWidget* owner) {
    auto* help = owner->findChild<HelpWindow*>(QString(), Qt::FindDirectChildrenOnly);
    if (!help) {
        const QString index = HelpIndexPath(QCoreApplication::applicationDirPath());
        if (index.isEmpty()) {
            Seam().ShowMessage("Unable to open help file", "QDX-Velorin", MessageIcon::Information);
            return nullptr;
        }
        help = new HelpWindow(index, owner);
    } else {
        help->ShowContents();
    }
    help->show();
    help->raise();
    help->activateWindow();
    return help;
}

} // namespace velorin
