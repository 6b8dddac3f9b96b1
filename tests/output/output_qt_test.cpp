// The desk's picture on the offscreen platform: File > Save Chart As...
// writes what the desk shows; a print job of it, read back from its PDF,
// shows the desk at the full width of the page; the wait for the GIF
// conversion shows its box and gives the run up on Cancel.
#include <gtest/gtest.h>

#include <QDialog>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <filesystem>
#include <fstream>

#include "output/qt/printing.h"
#include "shell/core/shell_state.h"
#include "shell/qt/conversion_wait.h"
#include "tests/shell_qt/frame_fixture.h"
#include "tools/sample_data/sample_data.h"

namespace velorin {
namespace {

namespace fs = std::filesystem;

// The sample ACME price chart on a frame the offscreen screen holds whole.
class DeskPicture : public test_support::QtFrameTest {
  protected:
    void SetUp() override {
        QtFrameTest::SetUp();
        frame->resize(700, 500);
        seam.QueueFile(
            dir.Write("ACME.PRC", sample_data::InstrumentText(sample_data::DefaultDesk()[0])));
        frame->FrameCommand(cmd::Datafile);
    }
};

// The first page of a PDF at 72 pixels per inch (a pixel a point), through
// pdftoppm (poppler-utils); null when it cannot be read.
QImage PageOf(const std::string& pdf, const std::string& base) {
    QProcess::execute(QStringLiteral("pdftoppm"),
                      {QStringLiteral("-r"), QStringLiteral("72"), QStringLiteral("-png"),
                       QStringLiteral("-singlefile"), QString::fromStdString(pdf),
                       QString::fromStdString(base)});
    return QImage(QString::fromStdString(base + ".png"));
}

// The page shows the desk at the full width of the printable area, from its
// left edge, in the desk's proportions. Each picture is cut to the box
// around all that is not white paper and reduced to 48 x 32 cells; their
// mean grey difference lets scaling and compression through (about 1 of
// 255) but not a blank page, nor the desk upside down (about 50).
void ExpectDeskOnPage(const QImage& desk, const QImage& page, const QRectF& printable) {
    QRect box[2];
    QImage cells[2];
    for (const int i : {0, 1}) {
        const QImage rgb = (i ? page : desk).convertToFormat(QImage::Format_RGB32);
        for (int y = 0; y < rgb.height(); ++y)
            for (int x = 0; x < rgb.width(); ++x)
                if (qGray(rgb.pixel(x, y)) < 240) box[i] |= QRect(x, y, 1, 1);
        cells[i] = rgb.copy(box[i]).scaled(48, 32, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    ASSERT_FALSE(box[1].isEmpty()) << "a blank page";
    double sum = 0;
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 48; ++x)
            sum += std::abs(qGray(cells[0].pixel(x, y)) - qGray(cells[1].pixel(x, y)));
    EXPECT_LT(sum / (48 * 32), 12.0);
    EXPECT_NEAR(box[1].left(), printable.left(), 2);
    EXPECT_NEAR(box[1].width(), printable.width(), 2);
    EXPECT_NEAR(box[1].height(), printable.width() * desk.height() / desk.width(), 2);
}

TEST_F(DeskPicture, SavedAndPrinted) {
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
    EXPECT_EQ(pdf.readAll().count("/Type /Page\n"), 1);
    const QImage page = PageOf(dir.PathOf("desk.pdf"), dir.PathOf("page"));
    if (page.isNull()) GTEST_SKIP() << "the PDF was not read back: is poppler-utils installed?";
    ExpectDeskOnPage(saved, page, printer.pageLayout().paintRect(QPageLayout::Point));
    // "Print..." through a real queue: tools/test-print-queue.sh makes a PDF
    // queue the default printer and names the fresh folder of its files.
    const char* folder = std::getenv("VELORIN_TEST_PRINT_FOLDER");
    if (!folder) return;
    frame->FrameCommand(cmd::Print);
    QImage queued; // the queue's file, once it can be read
    for (int tries = 0; tries < 300 && queued.isNull(); ++tries) {
        QTest::qWait(200);
        for (const fs::directory_entry& e : fs::directory_iterator(folder))
            if (e.path().extension() == ".pdf")
                queued = PageOf(e.path().string(), dir.PathOf("queued"));
    }
    ExpectDeskOnPage(saved, queued, JobPrinter()->pageLayout().paintRect(QPageLayout::Point));
}

// The tool never writes its log: the wait shows its box and keeps the desk
// painting; Cancel gives the run up and leaves the bitmaps. A log that
// comes ends the wait and the bitmaps go. The box goes either way.
TEST(ConversionWait, CancelledOrEndedByTheLog) {
    for (const bool cancel : {true, false}) {
        ResetProgramState();
        test_support::TempDir dir;
        const fs::path working = fs::current_path();
        fs::current_path(dir.path()); // the log is written in the working directory
        QWidget owner;
        ConversionWait wait(&owner);
        std::ofstream(dir.PathOf("ACMEprc.bmp")) << "BM";
        QString shown;
        QTimer::singleShot(300, &owner, [&] {
            auto* box = owner.findChild<QDialog*>(QStringLiteral("CONVERTING"));
            shown = box && box->isVisible() ? box->findChild<QLabel*>()->text() : QString();
            if (cancel && box) box->findChild<QPushButton*>()->click();
            if (!cancel) std::ofstream("cnvtogif.log") << "done\n";
        });
        EXPECT_EQ(WaitAndClean(dir.path().c_str()), !cancel);
        EXPECT_EQ(shown, QStringLiteral("Converting charts..."));
        EXPECT_EQ(fs::exists(dir.PathOf("ACMEprc.bmp")), cancel);
        EXPECT_EQ(shell.batchCancelled, cancel ? 1 : 0);
        EXPECT_EQ(owner.findChild<QDialog*>(), nullptr);
        fs::current_path(working);
    }
}

} // namespace
} // namespace velorin
