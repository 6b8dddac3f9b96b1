#include "resources/icons.h"

#include <QPainter>
#include <QPixmap>

namespace velorin {
namespace {

// A small chart: bars rising over a ground colour.
QIcon ChartIcon(QColor ground, QColor bars) {
    QIcon icon;
    for (int size : {16, 32, 48}) {
        QPixmap pm(size, size);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        p.setBrush(ground);
        p.setPen(Qt::NoPen);
        p.drawRoundedRect(QRectF(0, 0, size, size), size / 6.0, size / 6.0);
        p.setBrush(bars);
        const double w = size / 7.0;
        const double heights[] = {0.35, 0.55, 0.45, 0.75};
        for (int i = 0; i < 4; ++i) {
            const double h = heights[i] * size;
            p.drawRect(QRectF(w * (1 + i * 1.4), size - w - h, w, h));
        }
        p.end();
        icon.addPixmap(pm);
    }
    return icon;
}

} // namespace

QIcon FrameIcon() {
    return ChartIcon(QColor(0x1f, 0x3a, 0x5f), QColor(0xf2, 0xc1, 0x4e));
}
QIcon GreenIcon() {
    return ChartIcon(QColor(0x10, 0x10, 0x10), QColor(0x3c, 0xd0, 0x70));
}
QIcon RedIcon() {
    return ChartIcon(QColor(0x10, 0x10, 0x10), QColor(0xe0, 0x40, 0x40));
}
QIcon YellowIcon() {
    return ChartIcon(QColor(0x10, 0x10, 0x10), QColor(0xf0, 0xd0, 0x30));
}

QIcon KeyIcon(const char* name) {
    static const struct {
        const char* name;
        QColor bars;
    } keys[] = {{"BLUE", QColor(0x40, 0x70, 0xe8)},    {"UNI", QColor(0x30, 0xc8, 0xd0)},
                {"VIOLET", QColor(0xa0, 0x50, 0xe0)},  {"GRAY", QColor(0x9a, 0x9a, 0x9a)},
                {"DYELLOW", QColor(0xb0, 0x90, 0x10)}, {"WHITE", QColor(0xf4, 0xf4, 0xf4)}};
    const QLatin1StringView key(name ? name : "");
    if (key == QLatin1StringView("YELLOW")) return YellowIcon();
    if (key == QLatin1StringView("GREEN")) return GreenIcon();
    if (key == QLatin1StringView("RED")) return RedIcon();
    for (const auto& k : keys)
        if (key == QLatin1StringView(k.name)) return ChartIcon(QColor(0x10, 0x10, 0x10), k.bars);
    return {};
}

} // namespace velorin
