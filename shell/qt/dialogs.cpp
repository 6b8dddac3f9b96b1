#include "shell/qt/dialogs.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "resources/icons.h"

namespace velorin {

namespace {
QLabel* IconLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setPixmap(FrameIcon().pixmap(48, 48));
    return label;
}
} // namespace

StartupDialog::StartupDialog(QWidget* parent, int milliseconds) : QDialog(parent) {
    setObjectName(QStringLiteral("STARTUP"));
    setModal(true);
    setWindowTitle(QStringLiteral("QDX-Velorin"));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    auto* top = new QHBoxLayout;
    top->addWidget(IconLabel(this));
    auto* title = new QLabel(QStringLiteral("QDX-Velorin Ver. 4.0"), this);
    QFont f = title->font();
    f.setPointSize(f.pointSize() + 4);
    f.setBold(true);
    title->setFont(f);
    top->addWidget(title, 1);
    auto* notice = new QGroupBox(QStringLiteral("Notice"), this);
    auto* noticeText = new QLabel(
        QStringLiteral("Technical analysis workstation.\n"
                       "Charts, indicators and drawn lines are aids to judgement;\n"
                       "they are no advice to buy or sell any instrument."),
        notice);
    auto* noticeLayout = new QVBoxLayout(notice);
    noticeLayout->addWidget(noticeText);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(notice);
    QTimer::singleShot(milliseconds, this, [this] {
        timeUp_ = true;
        accept();
    });
}

void StartupDialog::closeEvent(QCloseEvent* event) {
    if (timeUp_)
        event->accept();
    else
        event->ignore();
}

void StartupDialog::keyPressEvent(QKeyEvent* event) { event->accept(); }

void RunAboutDialog(QWidget* parent) {
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("ABOUT"));
    dialog.setWindowTitle(QStringLiteral("About QDX-Velorin"));
    auto* layout = new QVBoxLayout(&dialog);
    auto* top = new QHBoxLayout;
    top->addWidget(IconLabel(&dialog));
    top->addWidget(new QLabel(QStringLiteral("QDX-Velorin Ver. 4.0\n"
                                             "Technical analysis charting workstation"),
                              &dialog),
                   1);
    layout->addLayout(top);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    layout->addWidget(buttons);
    dialog.exec();
}

} // namespace velorin
