#include "views/qt/views_desk.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include "resources/command_ids.h"
#include "views/qt/data_view_window.h"
#include "views/qt/levels_view_window.h"

namespace velorin {
namespace {

// The child windows of the desk that hold a view of class T, top first.
template <typename T, typename F> void ForEachView(QMdiArea* desk, F&& f) {
    if (!desk) return;
    const QList<QMdiSubWindow*> subs = desk->subWindowList(QMdiArea::StackingOrder);
    for (auto it = subs.crbegin(); it != subs.crend(); ++it)
        if (T* view = qobject_cast<T*>((*it)->widget())) f(*view);
}

QMdiArea* DeskOf(QWidget* w) {
    for (; w; w = w->parentWidget())
        if (auto* area = qobject_cast<QMdiArea*>(w)) return area;
    return nullptr;
}

} // namespace

ChildView* CreateCompanionWindow(Chart* chart, WindowClass windowClass) {
    switch (windowClass) {
    case WindowClass::DataView:
        return new DataViewWindow(chart);
    case WindowClass::ResView:
        return new LevelsViewWindow(chart);
    default:
        return nullptr;
    }
}

void RepaletteDataViews(QWidget* onDesk) {
    ForEachView<DataViewWindow>(DeskOf(onDesk),
                                [](DataViewWindow& v) { v.Command(cmd::SheetPalette); });
}

void FollowCrosshairOnDesk(QMdiArea* desk, int sourceSlot, int row) {
    ForEachView<DataViewWindow>(desk, [sourceSlot, row](DataViewWindow& v) {
        if (v.chart() && v.chart()->sourceSlot == sourceSlot) v.FollowCrosshair(row);
    });
}

void UpdateLevelsViewsOnDesk(QMdiArea* desk) {
    ForEachView<LevelsViewWindow>(desk, [](LevelsViewWindow& v) { v.UpdateLevels(); });
}

void RefreshDataViewWindow(ChildView* view) {
    if (auto* v = qobject_cast<DataViewWindow*>(view)) v->Refresh();
}

} // namespace velorin
