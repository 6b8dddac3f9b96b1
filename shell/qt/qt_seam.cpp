#include "shell/qt/qt_seam.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>

#include "shell/qt/modal_dialogs.h"

namespace velorin {

namespace {
QString FromLocal(std::string_view text) {
    return QString::fromLocal8Bit(text.data(), static_cast<qsizetype>(text.size()));
}
} // namespace

QWidget* QtUserSeam::Owner() {
    if (QWidget* w = QApplication::activeWindow()) return w;
    return nullptr;
}

int QtUserSeam::ShowMessage(std::string_view text, std::string_view caption, MessageIcon icon) {
    QMessageBox::Icon qtIcon = QMessageBox::Information;
    switch (icon) {
    case MessageIcon::Information:
        qtIcon = QMessageBox::Information;
        break;
    case MessageIcon::Stop:
        qtIcon = QMessageBox::Critical;
        break;
    case MessageIcon::Warning:
        qtIcon = QMessageBox::Warning;
        break;
    case MessageIcon::Question:
        qtIcon = QMessageBox::Question;
        break;
    }
    QMessageBox box(qtIcon, FromLocal(caption), FromLocal(text), QMessageBox::Ok, Owner());
    box.exec();
    return 1;
}

int QtUserSeam::AskFile(const FileDialogRequest& request, std::string& pathOut) {
    const QString title = FromLocal(request.title);
    const QString filter = FromLocal(request.filter);
    QString path;
    if (request.save) {
        // A name typed without an ending gets the default one (".sql", ".vl").
        QFileDialog dialog(Owner(), title, QDir::currentPath(), filter);
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        if (!request.defaultExtension.empty())
            dialog.setDefaultSuffix(FromLocal(request.defaultExtension));
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return 0;
        path = dialog.selectedFiles().constFirst();
    } else
        path = QFileDialog::getOpenFileName(Owner(), title, QDir::currentPath(), filter, nullptr,
                                            QFileDialog::ReadOnly);
    if (path.isEmpty()) return 0;
    const QByteArray local = QDir::toNativeSeparators(path).toLocal8Bit();
    pathOut.assign(local.constData(), static_cast<std::size_t>(local.size()));
    return 1;
}

void QtUserSeam::SetWaitCursor(bool on) {
    if (on)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

int QtUserSeam::RunComboDialog(ComboDialog& dialog) {
    return ExecComboDialog(dialog, Owner());
}

void QtUserSeam::ShowValuesDialog(const ValuesDialog& dialog) {
    ExecValuesDialog(dialog, Owner());
}

int QtUserSeam::ChooseColour(std::uint32_t& rgb) {
    return ExecColourDialog(rgb, Owner());
}

} // namespace velorin
