#include "shell/qt/conversion_wait.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace velorin {

ConversionWait::ConversionWait(QWidget* owner)
    : owner_(owner), previous_(InstallBitmapConverter(this)) {}

ConversionWait::~ConversionWait() {
    WaitEnded();
    InstallBitmapConverter(previous_);
}

void ConversionWait::Start(const std::string& command) {
    cancelled_ = false;
    BitmapConverter::Start(command);
}

bool ConversionWait::Pause() {
    if (!box_) {
        box_ = new QDialog(owner_);
        box_->setObjectName(QStringLiteral("CONVERTING"));
        box_->setWindowTitle(QStringLiteral("QDX-Velorin"));
        auto* layout = new QVBoxLayout(box_);
        layout->addWidget(new QLabel(QStringLiteral("Converting charts..."), box_));
        auto* cancel = new QPushButton(QStringLiteral("Cancel"), box_);
        layout->addWidget(cancel);
        QObject::connect(cancel, &QPushButton::clicked, box_, &QDialog::reject);
        QObject::connect(box_, &QDialog::rejected, box_, [this] { Cancel(); });
        // The box does not hold the run's code up, but while it stands no
        // command reaches the frame: the run is in the middle of the desk.
        box_->setWindowModality(Qt::ApplicationModal);
        box_->show();
        // The run's wait cursor gives way to the arrow while Cancel is offered.
        QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    QEventLoop loop;
    loop_ = &loop;
    const QString log = QString::fromStdString(LogPath());
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&loop, &log] {
        if (QFileInfo::exists(log)) loop.quit();
    });
    look.start(50);
    QTimer::singleShot(5000, &loop, &QEventLoop::quit);
    if (!cancelled_) loop.exec();
    loop_ = nullptr;
    return !cancelled_;
}

void ConversionWait::WaitEnded() {
    if (!box_) return;
    delete box_;
    QApplication::restoreOverrideCursor();
}

void ConversionWait::Cancel() {
    cancelled_ = true;
    if (loop_) loop_->quit();
}

} // namespace velorin
