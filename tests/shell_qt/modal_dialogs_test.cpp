// The modal dialogs driven headless: a timer acts as the user on the dialog
// the seam has opened.
#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QTimer>

#include <functional>

#include "shell/qt/qt_seam.h"

namespace velorin {
namespace {

// Runs `act` on the modal dialog once it is up; `act` must close it.
void WhenModal(std::function<void(QDialog*)> act) {
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, act] {
        auto* modal = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!modal) return;
        timer->deleteLater();
        timer->stop();
        act(modal);
    });
    timer->start(10);
}

TEST(ModalDialogs, ComboDialogHandsBackTheEditedTextsOnOkOnly) {
    QtUserSeam seam;
    ComboDialog d{"PERIODTHREE", "Periods", {}};
    d.fields.push_back({20215, "Short Term", "RED", "0.150", {"0.100", "0.200"}});
    d.fields.push_back({20216, "Long Term", "GREEN", "0.075", {"0.100", "0.200"}});
    QString shown;
    for (bool ok : {false, true}) {
        WhenModal([&](QDialog* w) {
            auto* first = w->findChild<QComboBox*>(QStringLiteral("20215"));
            auto* second = w->findChild<QComboBox*>(QStringLiteral("20216"));
            if (first && second) {
                shown = first->currentText() + QLatin1Char(' ') + second->currentText();
                first->setEditText(QStringLiteral("0.5"));
                second->setEditText(QString(60, QLatin1Char('7'))); // more than a box holds
            }
            ok ? w->accept() : w->reject();
        });
        EXPECT_EQ(seam.RunComboDialog(d), ok ? 0 : 1);
        EXPECT_EQ(shown, QStringLiteral("0.150 0.075"));
        EXPECT_EQ(d.fields[0].text, ok ? "0.5" : "0.150");
    }
    EXPECT_EQ(d.fields[1].text, std::string(50, '7'));
}

TEST(ModalDialogs, ColourDialogStartsOnTheColourAndReturnsTheChoice) {
    QtUserSeam seam;
    std::uint32_t rgb = 0x00123456;
    QColor start;
    WhenModal([&](QDialog* w) {
        if (auto* dialog = qobject_cast<QColorDialog*>(w)) {
            start = dialog->currentColor();
            dialog->setCurrentColor(QColor(0xAB, 0xCD, 0xEF));
        }
        w->accept();
    });
    EXPECT_EQ(seam.ChooseColour(rgb), 1);
    EXPECT_EQ(start, QColor(0x12, 0x34, 0x56));
    EXPECT_EQ(rgb, 0x00ABCDEFu);
}

} // namespace
} // namespace velorin
