#include "shell/qt/frame_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QTimer>

#include <cstring>
#include <ctime>

#include "chart_model/analysis_chart.h"
#include "chart_model/price_chart.h"
#include "interaction/chart_window_port.h"
#include "interaction/child_view.h"
#include "interaction/price_child.h"
#include "market_data/connect.h"
#include "market_data/data_file.h"
#include "market_data/data_source.h"
#include "rendering/palette.h"
#include "resources/icons.h"
#include "shell/core/frame_rules.h"
#include "shell/core/shell_state.h"
#include "shell/core/user_seam.h"
#include "shell/qt/dialogs.h"

namespace velorin {

FrameWindow* FrameWindow::instance_ = nullptr;

namespace {

constexpr int FirstWindowListId = 559;

void Inform(const char* text) {
    Seam().ShowMessage(text, "QDX-Velorin", MessageIcon::Information);
}

// F1 over an open menu chooses the highlighted entry.
class MenuF1Filter final : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress &&
            static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1) {
            if (auto* menu = qobject_cast<QMenu*>(watched); menu && menu->activeAction()) {
                QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
                QApplication::sendEvent(menu, &enter);
                return true;
            }
        }
        return false;
    }
};

// Tile Horizontal puts the windows one above the other, Tile Vertical side
// by side; minimised windows keep their place.
void TileChildren(QMdiArea* area, bool horizontal) {
    QList<QMdiSubWindow*> subs;
    for (QMdiSubWindow* sub : area->subWindowList(QMdiArea::StackingOrder))
        if (sub->isVisible() && !sub->isMinimized()) subs.prepend(sub);
    if (subs.isEmpty()) return;
    const QSize size = area->viewport()->size();
    const int n = static_cast<int>(subs.size());
    for (int i = 0; i < n; ++i) {
        QMdiSubWindow* sub = subs.at(i);
        if (sub->isMaximized()) sub->showNormal();
        if (horizontal) {
            const int top = size.height() * i / n, bottom = size.height() * (i + 1) / n;
            sub->setGeometry(0, top, size.width(), bottom - top);
        } else {
            const int left = size.width() * i / n, right = size.width() * (i + 1) / n;
            sub->setGeometry(left, 0, right - left, size.height());
        }
    }
}

// Minimised windows in a row along the bottom of the desk.
void ArrangeIcons(QMdiArea* area) {
    int x = 0;
    const int bottom = area->viewport()->height();
    for (QMdiSubWindow* sub : area->subWindowList(QMdiArea::CreationOrder)) {
        if (!sub->isMinimized()) continue;
        const QSize s = sub->size();
        sub->move(x, bottom - s.height());
        x += s.width();
    }
}

ChildView* ViewOf(QMdiSubWindow* sub) {
    return sub ? qobject_cast<ChildView*>(sub->widget()) : nullptr;
}

} // namespace

FrameWindow::FrameWindow(QWidget* parent) : QMainWindow(parent) {
    instance_ = this;
    setWindowTitle(QStringLiteral("QDX-Velorin"));
    setWindowIcon(FrameIcon());
    mdiClient_ = new QMdiArea(this);
    mdiClient_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdiClient_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(mdiClient_);
    // Only the window in front keeps its chart image between paints.
    connect(mdiClient_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* now) {
        if (lastActive_ && lastActive_ != now)
            if (ChildView* view = ViewOf(lastActive_)) view->Deactivated();
        lastActive_ = now;
    });
    BuildMenus();

    windowHooks.createChild = &FrameWindow::CreateChild;
    deskHooks.menuStateChanged = [] {
        if (instance_) instance_->UpdateMenuState();
    };
    deskWindowHooks.activeChart = [](WindowId* windowOut) -> Chart* {
        QMdiSubWindow* sub = instance_ ? instance_->FindActiveChild() : nullptr;
        ChildView* view = ViewOf(sub);
        if (windowOut) *windowOut = reinterpret_cast<WindowId>(sub);
        return view ? view->chart() : nullptr;
    };
    chartActionHooks.repaintAllCharts = [] {
        if (instance_) instance_->RepaintAllCharts();
    };
    deskWindowHooks.invalidate = [](WindowId window) {
        if (!instance_) return;
        for (QMdiSubWindow* sub : instance_->mdiClient_->subWindowList())
            if (reinterpret_cast<WindowId>(sub) == window)
                if (ChildView* view = ViewOf(sub)) view->Invalidate();
    };

    realTimeTimer_ = new QTimer(this);
    realTimeTimer_->setInterval(25000);
    connect(realTimeTimer_, &QTimer::timeout, this, [this] { TimerTick(1); });
    realTimeTimer_->start();
    refetchTimer_ = new QTimer(this);
    refetchTimer_->setInterval(60000);
    connect(refetchTimer_, &QTimer::timeout, this, [this] { TimerTick(3); });
    refetchTimer_->start();
    shell.lastRefetchTime = static_cast<std::int64_t>(std::time(nullptr));
    shell.frameExists = true;
}

FrameWindow::~FrameWindow() {
    DestroyFrame();
    if (windowHooks.createChild == &FrameWindow::CreateChild) windowHooks.createChild = nullptr;
    deskHooks.menuStateChanged = nullptr;
    deskWindowHooks = {};
    chartActionHooks.repaintAllCharts = nullptr;
    if (instance_ == this) instance_ = nullptr;
    shell.frameExists = false;
}

void FrameWindow::BuildMenus() {
    int count = 0;
    const MenuEntry* entries = MainMenuEntries(&count);
    auto* f1 = new MenuF1Filter(this);
    QList<QMenu*> stack;
    for (int i = 0; i < count; ++i) {
        const MenuEntry& e = entries[i];
        switch (e.type) {
        case MenuEntry::Popup: {
            QMenu* menu = stack.isEmpty() ? menuBar()->addMenu(QString::fromLatin1(e.text))
                                          : stack.last()->addMenu(QString::fromLatin1(e.text));
            menu->installEventFilter(f1);
            if (stack.isEmpty() && std::strcmp(e.text, "&Window") == 0) windowMenu_ = menu;
            stack.append(menu);
            break;
        }
        case MenuEntry::EndPopup:
            stack.removeLast();
            break;
        case MenuEntry::Separator:
            stack.last()->addSeparator();
            break;
        case MenuEntry::Item: {
            QAction* a = stack.last()->addAction(QString::fromLatin1(e.text));
            a->setData(e.id);
            a->setEnabled(!e.greyed);
            if (e.checked) {
                a->setCheckable(true);
                a->setChecked(true);
            }
            const int id = e.id;
            connect(a, &QAction::triggered, this, [this, id] { FrameCommand(id); });
            actions_.insert(id, a);
            break;
        }
        }
    }
    // Check marks come and go on these; the rest never show one.
    for (int id : {20702, 10505, 10506, 10508, 10509, 10510, 10511, 10512, 10513, 10514, 10515,
                   10516, 10110})
        if (QAction* a = action(id)) a->setCheckable(true);
    // The Data Value item is checked while the option is 0.
    if (QAction* a = action(10505)) a->setChecked(shell.defaultFreePlaced == 0);
    if (windowMenu_) connect(windowMenu_, &QMenu::aboutToShow, this, &FrameWindow::FillWindowMenu);
}

void FrameWindow::FillWindowMenu() {
    // The list of open windows below the fixed items, ids from 559 on.
    const QList<QAction*> all = windowMenu_->actions();
    for (QAction* a : all)
        if (a->property("windowList").toBool()) {
            windowMenu_->removeAction(a);
            a->deleteLater();
        }
    const QList<QMdiSubWindow*> subs = mdiClient_->subWindowList(QMdiArea::CreationOrder);
    if (subs.isEmpty()) return;
    QAction* sep = windowMenu_->addSeparator();
    sep->setProperty("windowList", true);
    int n = 0;
    for (QMdiSubWindow* sub : subs) {
        QAction* a =
            windowMenu_->addAction(QStringLiteral("&%1 %2").arg(n + 1).arg(sub->windowTitle()));
        a->setProperty("windowList", true);
        a->setData(FirstWindowListId + n);
        a->setCheckable(true);
        a->setChecked(sub == mdiClient_->activeSubWindow());
        connect(a, &QAction::triggered, this, [this, sub] {
            if (mdiClient_->subWindowList().contains(sub)) {
                if (sub->isMinimized()) sub->showNormal();
                mdiClient_->setActiveSubWindow(sub);
            }
        });
        ++n;
    }
}

bool FrameWindow::IsGreyed(int id) const {
    QAction* a = action(id);
    return a && !a->isEnabled();
}

void FrameWindow::SetGreyed(int id, bool greyed) {
    if (QAction* a = action(id)) a->setEnabled(!greyed);
}

void FrameWindow::UpdateMenuState() {
    velorin::UpdateMenuState(*this, shell.chartCount, nullptr, 0);
}

QMdiSubWindow* FrameWindow::FindActiveChild() const {
    const QList<QMdiSubWindow*> order = mdiClient_->subWindowList(QMdiArea::StackingOrder);
    if (order.isEmpty()) return nullptr;
    QMdiSubWindow* first = mdiClient_->activeSubWindow();
    if (!first) first = order.last();
    // A minimised window lying directly under the active one is taken instead.
    const qsizetype at = order.indexOf(first);
    if (at > 0 && order.at(at - 1)->isMinimized()) return order.at(at - 1);
    return first;
}

Chart* FrameWindow::RequireChart() {
    ChildView* view = ViewOf(FindActiveChild());
    if (!view || !view->chart()) return nullptr;
    Chart* chart = view->chart();
    if (std::strcmp(chart->kindName, "Data View") == 0 ||
        std::strcmp(chart->kindName, "Levels View") == 0) {
        Inform("Please Select Chart");
        return nullptr;
    }
    return chart;
}

void FrameWindow::CloseAllChildren() {
    // Destroy every child at once, topmost first.
    while (true) {
        const QList<QMdiSubWindow*> order = mdiClient_->subWindowList(QMdiArea::StackingOrder);
        if (order.isEmpty()) break;
        QMdiSubWindow* top = order.last();
        mdiClient_->removeSubWindow(top);
        delete top;
    }
    marketData.nextSourceSlot = 0;
    shell.chartCount = 0;
    UpdateMenuState();
}

void FrameWindow::RepaintAllCharts() {
    for (QMdiSubWindow* sub : mdiClient_->subWindowList()) {
        if (ChildView* view = ViewOf(sub)) view->Invalidate();
    }
}

WindowId FrameWindow::CreateChild(const ChildWindowRequest& request) {
    if (!instance_) return 0;
    QMdiArea* area = instance_->mdiClient_;
    ChildView* view = nullptr;
    switch (request.windowClass) {
    case WindowClass::PriceChild:
        view = new PriceChild(request.chart);
        break;
    default:
        return 0; // the other window classes arrive with their charts
    }
    auto* sub = new QMdiSubWindow;
    sub->setWidget(view);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowIcon(GreenIcon());
    sub->setWindowTitle(QString::fromLocal8Bit(request.caption));
    area->addSubWindow(sub);
    switch (request.placement) {
    case WindowPlacement::SystemDefault: {
        // Cascade from the top left, as a new MDI child is placed by default.
        const int n = static_cast<int>(area->subWindowList().size()) - 1;
        const QSize size(area->width() * 3 / 4, area->height() * 3 / 4);
        sub->resize(size.expandedTo(QSize(320, 240)));
        sub->move((n % 10) * 24, (n % 10) * 24);
        break;
    }
    case WindowPlacement::FillClient:
        sub->setGeometry(QRect(QPoint(0, 0), area->viewport()->size()));
        break;
    case WindowPlacement::Given:
        sub->setGeometry(request.x, request.y, request.width, request.height);
        break;
    }
    if (!request.hidden) sub->show();
    return reinterpret_cast<WindowId>(sub);
}

void FrameWindow::TimerTick(int timerId) {
    if (shell.chartCount == 0) return;
    if (timerId == 1) {
        if (shell.realTimeOn) return;
        WaitCursor wait;
        ++pendingRefreshRuns_;
        if (cycleHooks.refreshPendingCharts) cycleHooks.refreshPendingCharts();
    } else if (timerId == 3) {
        const auto now = static_cast<std::int64_t>(std::time(nullptr));
        if (now - shell.lastRefetchTime < std::int64_t{shell.fetchFrequencyMinutes} * 60) return;
        WaitCursor wait;
        ++refetchRuns_;
        if (cycleHooks.refetchAllSources) cycleHooks.refetchAllSources();
        shell.lastRefetchTime = static_cast<std::int64_t>(std::time(nullptr));
    }
}

void FrameWindow::ConnectDataFile() {
    shell.lastConnectOk = 0;
    if (const char* m = SourceLimitMessage(marketData.nextSourceSlot, true)) return Inform(m);
    if (const char* m = ChartLimitMessage(shell.chartCount, shell.restoringLayout)) {
        Seam().ShowMessage(m, ChartLimitCaption, MessageIcon::Information);
        return;
    }
    if (!LoadDataFile(shell.restoringLayout)) return;
    WaitCursor wait;
    if (ConnectDataSource() && CreatePriceChart("Price", 0) == 1) {
        shell.lastConnectOk = 1;
        UpdateMenuState();
    }
}

void FrameWindow::SetThickness(int commandId) {
    const int group = (commandId - 10508) / 3; // 0 price, 1 model, 2 attachments
    const int value = (commandId - 10508) % 3 + 1;
    std::int32_t* target = group == 0   ? &shell.priceThickness
                           : group == 1 ? &shell.modelThickness
                                        : &shell.attachmentThickness;
    if (*target == value) return;
    const int base = 10508 + group * 3;
    for (int id = base; id < base + 3; ++id)
        if (QAction* a = action(id)) a->setChecked(id == commandId);
    *target = value;
    RepaintAllCharts();
}

void FrameWindow::FrameCommand(int id) {
    auto toggle = [this](int commandId, std::int32_t& flag, bool checkedWhenSet) {
        flag = flag ? 0 : 1;
        if (QAction* a = action(commandId)) a->setChecked(checkedWhenSet ? flag != 0 : flag == 0);
    };
    switch (id) {
    case 10105: { // New
        WaitCursor wait;
        shell.layoutPath[0] = '\0';
        CloseAllChildren();
        break;
    }
    case 10101: // Exit: no question asked
        DestroyFrame();
        break;
    case 10718:
        ConnectDataFile();
        break;
    case 20702:
        toggle(id, marketData.filterOn, true);
        break;
    case 10110:
        // Live conversations follow the toggle once the feeds exist.
        toggle(id, shell.realTimeOn, true);
        break;
    case 10505:
        toggle(id, shell.defaultFreePlaced, false);
        break;
    case 10506:
        toggle(id, shell.defaultExtended, true);
        break;
    case 10508:
    case 10509:
    case 10510:
    case 10511:
    case 10512:
    case 10513:
    case 10514:
    case 10515:
    case 10516:
        SetThickness(id);
        break;
    case 10507: // Default colours
        RestoreDefaultColours();
        RepaintAllCharts();
        break;
    case 10601:
        mdiClient_->cascadeSubWindows();
        break;
    case 10602: // Tile Vertical: side by side
    case 10603: // Tile Horizontal: one above the other
        TileChildren(mdiClient_, id == 10603);
        break;
    case 10604:
        ArrangeIcons(mdiClient_);
        break;
    case 10605:
        CloseAllChildren();
        break;
    case 10701:
        RunAboutDialog(this);
        break;
    case 10202:
    case 10302: {
        WaitCursor wait;
        MakeAll(id == 10202);
        break;
    }
    default:
        if (id >= 10703 && id <= 10716) {
            ButtonCommand(id);
        } else if (const ChartKindInfo* kind = KindByCommand(id);
                   kind && kind->windowClass == WindowClass::PriceChild &&
                   kind->layout != LayoutPair) {
            if (!ChartLimitOk()) return;
            WaitCursor wait;
            CreateAnalysisChart(kind->kindName);
        }
        // Connect, Database, the layout, print and image commands and the
        // two-instrument analyses arrive with their subsystems.
        break;
    }
}

bool FrameWindow::ChartLimitOk() {
    if (const char* m = ChartLimitMessage(shell.chartCount, shell.restoringLayout)) {
        Seam().ShowMessage(m, ChartLimitCaption, MessageIcon::Information);
        return false;
    }
    return true;
}

void FrameWindow::MakeAll(bool prices) {
    if (!FindActiveChild()) return Inform("Non Existent Connection To Data source");
    int count = 0;
    const char* const* kinds = prices ? MakeAllPriceKinds(&count) : MakeAllVolumeKinds(&count);
    for (int i = 0; i < count; ++i) {
        if (!ChartLimitOk()) return;
        if (CreateAnalysisChart(kinds[i]) != 1) return;
    }
    TileChildren(mdiClient_, true);
}

void FrameWindow::ButtonCommand(int id) {
    if (id >= 10709 && id <= 10712) {
        // The styles look at the window in front without the companion test.
        ChildView* view = ViewOf(FindActiveChild());
        Chart* chart = view ? view->chart() : nullptr;
        if (!chart) return;
        if (const char* m = StyleRefusal(id, chart->kind, chart->rowCount, chart->hasFullColumns))
            return Inform(m);
        ChartView& v = *chart->view;
        v.showLine = id == 10709;
        v.showHighLow = id == 10710;
        v.showBar = id == 10711;
        v.showCandle = id == 10712;
        view->Invalidate();
        return;
    }
    Chart* chart = RequireChart();
    if (!chart) return;
    ChildView* view = ViewOf(FindActiveChild());
    if (const char* m = ChartCommandRefusal(id, chart->kind)) return Inform(m);
    switch (id) {
    case 10703:
    case 10704:
        chart->view->resolution = id == 10703 ? ZoomInResolution(chart->view->resolution)
                                              : ZoomOutResolution(chart->view->resolution);
        view->Invalidate();
        break;
    case 10705:
        view->Command(20701);
        break;
    case 10706:
        break; // the Data View arrives with its window
    case 10707:
        view->Command(20311);
        break;
    case 10708:
        view->Command(20312);
        break;
    case 10713:
        view->Command(20513);
        break;
    case 10714:
        view->Command(20512);
        break;
    case 10715:
        view->Command(20501);
        break;
    case 10716:
        view->Command(20502);
        break;
    default:
        break;
    }
}

void FrameWindow::DestroyFrame() {
    if (destroyed_) return;
    destroyed_ = true;
    realTimeTimer_->stop();
    refetchTimer_->stop();
    CloseAllChildren();
    QApplication::quit();
}

void FrameWindow::closeEvent(QCloseEvent* event) {
    DestroyFrame();
    event->accept();
}

} // namespace velorin
