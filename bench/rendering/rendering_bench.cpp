// One run measures: (a) the full paint of a 2000-row candlestick chart with
// every row on screen into a 1920 x 1080 image, (b) one crosshair move,
// (c) the same candles drawn by QCustomPlot, (d) the same candles drawn by
// a bare QPainter loop. Run with QT_QPA_PLATFORM=offscreen.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "chart_model/chart.h"
#include "market_data/data_source.h"
#include "rendering/palette.h"
#include "rendering/price_paint.h"
#include "rendering/qt/qt_draw_device.h"
#include "rendering/style.h"

#ifdef VELORIN_BENCH_QCUSTOMPLOT
#include <qcustomplot.h>
#endif

namespace {

using namespace velorin;

constexpr int Width = 1920;
constexpr int Height = 1080;
constexpr int Rows = 2000;
constexpr int Slot = 0;

Chart* benchChart = nullptr;
PaintMemory benchMemory;

// A random walk with a fixed seed: the same candles in every benchmark.
void MakeChart() {
    if (benchChart) return;
    NewDataSource(Slot);
    DataSource& s = *SourceAt(Slot);
    s.rowCount = Rows;
    s.refCount = 1;
    unsigned state = 12345;
    auto next = [&]() {
        state = state * 1103515245u + 12345u;
        return ((state >> 8) & 0xFFFF) / 65536.0 - 0.5;
    };
    double price = 100.0;
    for (int i = 0; i < Rows; ++i) {
        std::snprintf(s.columns->dateText[i], DateTextSize, "%02d/%02d/%02d", 1 + i % 28,
                      1 + (i / 28) % 12, 90 + i / 336);
        const double open = price;
        price += next() * 2.0;
        const double close = price;
        s.columns->open[i] = open;
        s.columns->close[i] = close;
        s.columns->high[i] = std::max(open, close) + std::fabs(next());
        s.columns->low[i] = std::min(open, close) - std::fabs(next());
        s.columns->volume[i] = 1.0;
    }
    benchChart = NewChart(LayoutPlain);
    Chart& c = *benchChart;
    c.sourceSlot = Slot;
    c.secondSourceSlot = -1;
    c.rowCount = Rows;
    c.hasFullColumns = 1;
    c.priceScaleDenominator = 1;
    std::strcpy(c.kindName, "Price");
    std::strcpy(c.windowCaption, "BENCH Price");
    c.view->showCandle = 1;
    c.view->gridOn = 1;
    c.view->resolution = 0.25; // stretched to fill the width: all rows on screen
}

void BM_PaintPriceChart(benchmark::State& state) {
    MakeChart();
    PaintContext ctx(palette, drawingStyle, benchMemory);
    QImage image(Width, Height, QImage::Format_RGB32);
    for (auto _ : state) {
        QtDrawDevice device(image);
        PaintResult r = PaintPriceChart(device, *benchChart, Width, Height, ctx);
        benchmark::DoNotOptimize(r);
    }
    if (benchMemory.firstRowShown != 0) state.SkipWithError("not all rows on screen");
    // For a look at the result: VELORIN_BENCH_IMAGE=chart.png
    const QString path = qEnvironmentVariable("VELORIN_BENCH_IMAGE");
    if (!path.isEmpty()) {
        ctx.readout = {900, 400, true, false};
        {
            QtDrawDevice device(image);
            PaintPriceChart(device, *benchChart, Width, Height, ctx);
            MoveHairs(device, false, 0, 0, 900, 400, Width, Height);
        }
        image.save(path);
    }
}
BENCHMARK(BM_PaintPriceChart)->Unit(benchmark::kMillisecond);

void BM_CrosshairMove(benchmark::State& state) {
    MakeChart();
    PaintContext ctx(palette, drawingStyle, benchMemory);
    QImage image(Width, Height, QImage::Format_RGB32);
    {
        QtDrawDevice device(image);
        PaintPriceChart(device, *benchChart, Width, Height, ctx);
    }
    ctx.readout.crosshairOn = true;
    int step = 0;
    for (auto _ : state) {
        const int oldX = ctx.readout.mouseX, oldY = ctx.readout.mouseY;
        ctx.readout.mouseX = 300 + (step % 500);
        ctx.readout.mouseY = 200 + (step % 300);
        QtDrawDevice device(image);
        MoveHairs(device, step != 0, oldX, oldY, ctx.readout.mouseX, ctx.readout.mouseY, Width,
                  Height);
        ++step;
        PaintResult r =
            PaintPriceChartClipped(device, *benchChart, Width, Height, ReadoutRect, ctx);
        benchmark::DoNotOptimize(r);
    }
}
BENCHMARK(BM_CrosshairMove)->Unit(benchmark::kMicrosecond);

#ifdef VELORIN_BENCH_QCUSTOMPLOT
void BM_QCustomPlotCandles(benchmark::State& state) {
    MakeChart();
    const DataColumns& cols = *SourceAt(Slot)->columns;
    QCustomPlot plot;
    plot.resize(Width, Height);
    QVector<double> keys(Rows), open(Rows), high(Rows), low(Rows), close(Rows);
    for (int i = 0; i < Rows; ++i) {
        keys[i] = i;
        open[i] = cols.open[i];
        high[i] = cols.high[i];
        low[i] = cols.low[i];
        close[i] = cols.close[i];
    }
    auto* financial = new QCPFinancial(plot.xAxis, plot.yAxis);
    financial->setChartStyle(QCPFinancial::csCandlestick);
    financial->setData(keys, open, high, low, close, true);
    financial->setWidth(0.5);
    financial->setTwoColored(true);
    plot.setBackground(QBrush(Qt::black));
    plot.rescaleAxes();
    QImage image(Width, Height, QImage::Format_RGB32);
    for (auto _ : state) {
        QCPPainter painter(&image);
        plot.toPainter(&painter, Width, Height);
        painter.end();
        benchmark::DoNotOptimize(image.constBits());
    }
}
BENCHMARK(BM_QCustomPlotCandles)->Unit(benchmark::kMillisecond);
#endif

// The candles alone, as the paint maps them, with nothing else drawn.
void BM_BareQPainterCandles(benchmark::State& state) {
    MakeChart();
    const DataColumns& cols = *SourceAt(Slot)->columns;
    double lo = 1e50, hi = -1e50;
    for (int i = 0; i < Rows; ++i) {
        lo = std::min({lo, cols.low[i], cols.open[i], cols.close[i]});
        hi = std::max({hi, cols.high[i], cols.open[i], cols.close[i]});
    }
    const double ppv = (Height - 40) / (hi - lo);
    const double P = (Width - 40.0) / Rows;
    const QColor wick = ToQColor(PaletteColour(PaletteHighLow));
    const QColor body = ToQColor(PaletteColour(PaletteClose));
    QImage image(Width, Height, QImage::Format_RGB32);
    for (auto _ : state) {
        image.fill(Qt::black);
        QPainter p(&image);
        p.setBrush(Qt::black);
        for (int i = 0; i < Rows; ++i) {
            const int x = static_cast<int>(40 + i * P);
            auto y = [&](double v) { return Height - 20 - (v - lo) * ppv; };
            p.setPen(wick);
            p.drawLine(x, static_cast<int>(y(cols.high[i])), x, static_cast<int>(y(cols.low[i])));
            p.setPen(body);
            const int top = static_cast<int>(y(cols.open[i]) - 1);
            const int bottom = static_cast<int>(y(cols.close[i]) + 1);
            const QRect r(QPoint(x - 2, std::min(top, bottom)),
                          QPoint(x + 1, std::max(top, bottom) - 1));
            p.drawRect(r.adjusted(0, 0, -1, -1));
            if (cols.close[i] < cols.open[i]) p.fillRect(r, body);
        }
        p.end();
        benchmark::DoNotOptimize(image.constBits());
    }
}
BENCHMARK(BM_BareQPainterCandles)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
