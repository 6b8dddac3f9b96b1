// The desk's picture on the offscreen platform: File > Save Chart As...
// writes what the desk shows, and a print job of it makes a one-page PDF.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QMdiArea>
#include <QPrinter>

#include "market_data/date.h"
#include "output/qt/printing.h"
#include "resources/command_ids.h"
#include "shell/core/working_blocks.h"
#include "shell/qt/frame_window.h"
#include "tests/support/recording_seam.h"
#include "tests/support/temp_dir.h"
#include "tools/sample_data/sample_data.h"

namespace velorin {
namespace {

TEST(DeskPicture, SavedAndPrinted) {
    ResetProgramState();
    dateRules.todayDate = 50000; // after every date of the file
    ASSERT_TRUE(AllocateWorkingBlocks());
    test_support::RecordingSeam seam;
    UserSeam* previous = InstallSeam(&seam);
    test_support::TempDir dir;
    auto* frame = new FrameWindow;
    frame->resize(700, 500); // all of it on the offscreen screen
    frame->show();
    seam.QueueFile(
        dir.Write("ACME.PRC", sample_data::InstrumentText(sample_data::DefaultDesk()[0])));
    frame->FrameCommand(cmd::Datafile);
    seam.QueueFile(dir.PathOf("desk.bmp"));
    frame->FrameCommand(cmd::SaveChartAs);

    // Pixel for pixel the desk as it draws itself, and not a blank area.
    const QImage saved = QImage(QString::fromStdString(dir.PathOf("desk.bmp")))
                             .convertToFormat(QImage::Format_RGB32);
    const QImage drawn = frame->mdiClient()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_TRUE(saved == drawn);
    EXPECT_NE(saved.pixel(0, 0), saved.pixel(saved.width() / 2, saved.height() / 2));

    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(dir.PathOf("desk.pdf")));
    EXPECT_EQ(PrintWindow(frame->mdiClient(), &printer, "Velorin Printing"), PrintDone);
    QFile pdf(printer.outputFileName());
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    const QByteArray bytes = pdf.readAll();
    EXPECT_TRUE(bytes.startsWith("%PDF"));
    EXPECT_EQ(bytes.count("/Type /Page\n"), 1);

    delete frame;
    InstallSeam(previous);
    FreeWorkingBlocks();
}

} // namespace
} // namespace velorin
