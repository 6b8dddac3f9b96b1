#include "output/qt/printing.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

#include "output/print_layout.h"
#include "output/qt/capture.h"

namespace velorin {
namespace {

// The printer of the last Printer Setup, for the rest of the run.
std::unique_ptr<QPrinter> chosenPrinter;
std::unique_ptr<QPrinter> defaultPrinter;

// The modeless "PRINTING" box: "Printing..." and Cancel, which asks the
// job to stop.
class PrintingBox final : public QDialog {
  public:
    explicit PrintingBox(bool& abortRequested) {
        setObjectName(QStringLiteral("PRINTING"));
        setModal(false);
        setWindowTitle(QStringLiteral("QDX-Velorin"));
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(new QLabel(QStringLiteral("Printing..."), this));
        auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
        layout->addWidget(cancel);
        connect(cancel, &QPushButton::clicked, this, [this, &abortRequested] {
            abortRequested = true;
            hide();
        });
        cancel->setFocus();
    }
};

} // namespace

int PrintDib(const Dib* dib, QPrinter& printer, int printMode, int xScale, int yScale,
             const std::string& title) {
    if (dib == nullptr) return PrintNullWindow;
    const QImage image = DibToImage(*dib);
    if (image.isNull()) return PrintNotLockable;
    if (!printer.isValid()) return PrintNoPrinter;

    const std::string name = PrintTitle(title);
    printer.setDocName(QString::fromStdString(name));
    const QRect paint = printer.pageLayout().paintRectPixels(printer.resolution());
    const PrintPage page{paint.width(), paint.height(), printer.logicalDpiX(),
                         printer.logicalDpiY()};
    const ScreenRect print =
        PrintRectangle(printMode, page, dib->width, dib->height, xScale, yScale);

    bool abortRequested = false;
    PrintingBox box(abortRequested);
    box.show();
    QApplication::processEvents();

    QPainter painter;
    if (!painter.begin(&printer)) return PrintStartFailed;
    // The whole page is one band.
    ScreenRect target, source;
    const ScreenRect band{0, 0, page.width, page.height};
    if (BandSource(print, band, dib->width, dib->height, target, source))
        painter.drawImage(QRect(target.left, target.top, target.Width(), target.Height()), image,
                          QRect(source.left, source.top, source.Width(), source.Height()));
    QApplication::processEvents();
    if (abortRequested) {
        printer.abort();
        painter.end();
        return PrintDone;
    }
    return painter.end() ? PrintDone : PrintEndFailed;
}

QPrinter* JobPrinter() {
    if (chosenPrinter) return chosenPrinter.get();
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull()) return nullptr;
    if (!defaultPrinter || defaultPrinter->printerName() != info.printerName())
        defaultPrinter = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    return defaultPrinter.get();
}

int PrintWindow(QWidget* widget, QPrinter* printer, const std::string& title) {
    if (widget == nullptr) return PrintNullWindow;
    Dib dib;
    if (!CaptureWindow(widget, dib)) return PrintNoCapture;
    if (printer == nullptr) printer = JobPrinter();
    if (printer == nullptr) return PrintNoPrinter;
    return PrintDib(&dib, *printer, 1, 1, 1, title);
}

void PrinterSetup(QWidget* owner) {
    auto printer = chosenPrinter ? std::move(chosenPrinter)
                                 : std::make_unique<QPrinter>(QPrinter::HighResolution);
    QPrintDialog dialog(printer.get(), owner);
    if (dialog.exec() == QDialog::Accepted) chosenPrinter = std::move(printer);
}

} // namespace velorin
