#include "shell/qt/frame_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

#include <cstring>
#include <ctime>

#include "chart_model/live_update.h"
#include "interaction/child_view.h"
#include "interaction/corr_child.h"
#include "interaction/overlay_child.h"
#include "interaction/price_child.h"
#include "market_data/date.h"
#include "output/qt/capture.h"
#include "output/qt/printing.h"
#include "rendering/style.h"
#include "resources/command_ids.h"
#include "resources/icons.h"
#include "shell/core/layout_commands.h"
#include "shell/core/live_commands.h"
#include "shell/core/shell_state.h"
#include "shell/qt/button_bar_widget.h"
#include "shell/qt/dialogs.h"
#include "shell/qt/help_window.h"
#include "shell/qt/source_dialog.h"
#include "views/data_view.h"
#include "views/levels_view.h"
#include "views/qt/views_desk.h"

namespace velorin {

FrameWindow* FrameWindow::instance_ = nullptr;

namespace {

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
void TileSubWindows(QMdiArea* area, bool horizontal) {
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
void ArrangeMinimised(QMdiArea* area) {
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

// The wait for the pick of a second chart: while it stands no input event
// reaches any widget. A mouse press brings the child window under it in
// front and ends the wait; so does the paint of any chart window.
class PickWait final : public QObject {
  public:
    explicit PickWait(QMdiArea* area) : area_(area) { qApp->installEventFilter(this); }
    ~PickWait() override { qApp->removeEventFilter(this); }
    void Run() { loop_.exec(QEventLoop::AllEvents); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            if (qobject_cast<ChildView*>(watched)) loop_.quit();
            return false;
        }
        // Input reaches the top-level window first and its widget next: the
        // widget's copy is the one held back.
        if (!event->isInputEvent() || !watched->isWidgetType()) return false;
        if (event->type() == QEvent::MouseButtonPress ||
            event->type() == QEvent::NonClientAreaMouseButtonPress) {
            for (QObject* o = watched; o; o = o->parent())
                if (auto* sub = qobject_cast<QMdiSubWindow*>(o);
                    sub && area_->subWindowList().contains(sub)) {
                    if (sub->isMinimized()) sub->showNormal();
                    area_->setActiveSubWindow(sub);
                    break;
                }
            loop_.quit();
        }
        return true;
    }

  private:
    QMdiArea* area_;
    QEventLoop loop_;
};

} // namespace

FrameWindow::FrameWindow(QWidget* parent) : QMainWindow(parent) {
    instance_ = this;
    // Transactions that live-feed servers start come to the program here.
    SetDdeCallback(&DdeCallback);
    InstallSourceDialog();
    setWindowTitle(QStringLiteral("QDX-Velorin"));
    setWindowIcon(FrameIcon());
    mdiClient_ = new QMdiArea(this);
    mdiClient_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdiClient_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    // The button bar along the top, the desk of child windows below it.
    DefineAllButtons(buttons_);
    buttonBar_ = new ButtonBarWidget(buttons_, this, [this](int id) { FrameCommand(id); });
    auto* desk = new QWidget(this);
    auto* column = new QVBoxLayout(desk);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(buttonBar_);
    column->addWidget(mdiClient_, 1);
    setCentralWidget(desk);
    // Any key press anywhere takes the button hint away. F1 is not a key of
    // its own here: Help > Contents has no shortcut, since the accelerator
    // that names F1 is only consulted for keys the desk's window keys have
    // already taken, and F1 is none of them. Over an open menu F1 chooses
    // the entry (MenuF1Filter).
    new HintKeyFilter([this] { HideHint(); }, this);
    // Only the window in front keeps its chart image between paints.
    connect(mdiClient_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* now) {
        if (lastActive_ && lastActive_ != now)
            if (ChildView* view = ViewOf(lastActive_)) view->Deactivated();
        lastActive_ = now;
    });
    BuildMenus();

    previousDesk_ = InstallDesk(this);

    realTimeTimer_ = new QTimer(this);
    realTimeTimer_->setInterval(RealTimeTimerMilliseconds);
    connect(realTimeTimer_, &QTimer::timeout, this, [this] { TimerTick(RealTimeTimerId); });
    realTimeTimer_->start();
    refetchTimer_ = new QTimer(this);
    refetchTimer_->setInterval(RefetchTimerMilliseconds);
    connect(refetchTimer_, &QTimer::timeout, this, [this] { TimerTick(RefetchTimerId); });
    refetchTimer_->start();
    refreshCycle.lastRefetchTime = static_cast<std::int64_t>(std::time(nullptr));
    dateRules.rejectFuture = true;
}

FrameWindow::~FrameWindow() {
    DestroyFrame();
    SetDdeCallback(nullptr);
    InstallDesk(previousDesk_);
    if (instance_ == this) instance_ = nullptr;
    dateRules.rejectFuture = false;
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
    for (int id : {cmd::FilterData, cmd::DataValueDefault, cmd::LineExtendDefault, cmd::RealTime})
        if (QAction* a = action(id)) a->setCheckable(true);
    for (int id = cmd::PriceThin; id <= cmd::AttachmentThick; ++id)
        if (QAction* a = action(id)) a->setCheckable(true);
    // The Data Value item is checked while the option is 0.
    if (QAction* a = action(cmd::DataValueDefault))
        a->setChecked(drawingStyle.defaultFreePlaced == 0);
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
        a->setData(cmd::FirstWindowListItem + n);
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

void FrameWindow::MenuStateChanged() {
    UpdateFrameMenuState(*this);
    SyncButtons();
}

void FrameWindow::FrameCommand(int commandId) {
    velorin::FrameCommand(*this, commandId);
    SyncButtons();
}

ButtonState* FrameWindow::ButtonStates() {
    return buttons_.state;
}

// The saved picture is what the desk shows: the pixels of the MDI area. A
// batch has no menu to wait for.
bool FrameWindow::CaptureDesk(Dib& out) {
    return CaptureWindow(mdiClient_, out, shell.batchRunning == 0);
}

void FrameWindow::ShowSavingBox(bool shown) {
    if (shown) {
        QWidget* owner = QApplication::activeWindow();
        savingBox_ = new SavingBox(owner ? owner : this);
        savingBox_->setAttribute(Qt::WA_DeleteOnClose);
        savingBox_->show();
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    } else if (savingBox_) {
        savingBox_->close();
    }
}

int FrameWindow::PrintDesk(const char* title) {
    return PrintWindow(mdiClient_, nullptr, title);
}

void FrameWindow::PrinterSetup() {
    velorin::PrinterSetup(this);
}

void FrameWindow::ShowHelpContents() {
    OpenHelpContents(this);
}

void FrameWindow::SyncButtons() {
    if (buttonBar_) buttonBar_->SyncEnabled();
}

void FrameWindow::HideHint() {
    if (buttonBar_) buttonBar_->HideHint();
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

Chart* FrameWindow::ActiveChart(WindowId* windowOut) {
    QMdiSubWindow* sub =
        shell.restoringLayout && restoreFront_ ? restoreFront_.data() : FindActiveChild();
    if (windowOut) *windowOut = reinterpret_cast<WindowId>(sub);
    ChildView* view = ViewOf(sub);
    return view ? view->chart() : nullptr;
}

Chart* FrameWindow::ChartOf(WindowId window) {
    ChildView* view = ViewOfWindow(window);
    return view ? view->chart() : nullptr;
}

QMdiSubWindow* FrameWindow::SubWindowOf(WindowId window) const {
    for (QMdiSubWindow* sub : mdiClient_->subWindowList())
        if (reinterpret_cast<WindowId>(sub) == window) return sub;
    return nullptr;
}

WindowId FrameWindow::PickSecondChart(WindowId first, const char* prompt) {
    QPointer<QMdiSubWindow> sub = SubWindowOf(first);
    const QString old = sub ? sub->windowTitle().left(100) : QString();
    if (sub) sub->setWindowTitle(QString::fromLocal8Bit(prompt) + old);
    {
        PickWait wait(mdiClient_);
        wait.Run();
    }
    if (sub) sub->setWindowTitle(old);
    return reinterpret_cast<WindowId>(FindActiveChild());
}

ChildView* FrameWindow::ViewOfWindow(WindowId window) const {
    for (QMdiSubWindow* sub : mdiClient_->subWindowList())
        if (reinterpret_cast<WindowId>(sub) == window) return ViewOf(sub);
    return nullptr;
}

void FrameWindow::Invalidate(WindowId window) {
    if (ChildView* view = ViewOfWindow(window)) view->Invalidate();
}

void FrameWindow::SendChartCommand(WindowId window, int commandId) {
    if (ChildView* view = ViewOfWindow(window)) view->Command(commandId);
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
}

void FrameWindow::RepaintAllCharts() {
    // A Data View takes the palette again; a Levels View keeps its colours.
    for (QMdiSubWindow* sub : mdiClient_->subWindowList()) {
        ChildView* view = ViewOf(sub);
        if (!view || view->windowClass() == WindowClass::ResView) continue;
        if (view->windowClass() == WindowClass::DataView)
            view->Command(cmd::SheetPalette);
        else
            view->Invalidate();
    }
}

void FrameWindow::OpenDataView(WindowId, Chart&) {
    CreateDataView();
}

void FrameWindow::OpenLevelsView(WindowId, Chart&) {
    CreateLevelsView();
}

void FrameWindow::ResetDataView(WindowId window) {
    SendChartCommand(window, cmd::SheetReset);
}

void FrameWindow::RefreshDataView(WindowId window) {
    RefreshDataViewWindow(ViewOfWindow(window));
}

void FrameWindow::UpdateLevelsViews() {
    UpdateLevelsViewsOnDesk(mdiClient_);
}

void FrameWindow::FollowCrosshair(int sourceSlot, int row) {
    FollowCrosshairOnDesk(mdiClient_, sourceSlot, row);
}

void FrameWindow::Tile(bool horizontal) {
    TileSubWindows(mdiClient_, horizontal);
}

void FrameWindow::ArrangeIcons() {
    ArrangeMinimised(mdiClient_);
}

void FrameWindow::Cascade() {
    // From the top left, each window a title bar lower and further right
    // than the one under it, all of one size: most of the desk.
    QList<QMdiSubWindow*> subs;
    for (QMdiSubWindow* sub : mdiClient_->subWindowList(QMdiArea::StackingOrder))
        if (sub->isVisible() && !sub->isMinimized()) subs.append(sub);
    if (subs.isEmpty()) return;
    const QSize area = mdiClient_->viewport()->size();
    const int step =
        subs.first()->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, subs.first()) +
        subs.first()->style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const int n = static_cast<int>(subs.size());
    const int width = std::max(area.width() * 2 / 3, area.width() - (n - 1) * step);
    const int height = std::max(area.height() * 2 / 3, area.height() - (n - 1) * step);
    // Windows that would reach past the desk start again from the top left.
    const int perRun = std::max(1, std::min((area.width() - width) / std::max(step, 1),
                                            (area.height() - height) / std::max(step, 1)) +
                                       1);
    for (int i = 0; i < n; ++i) {
        QMdiSubWindow* sub = subs.at(i);
        if (sub->isMaximized()) sub->showNormal();
        const int offset = (i % perRun) * step;
        sub->setGeometry(offset, offset, width, height);
        sub->raise();
    }
    mdiClient_->setActiveSubWindow(subs.last());
}

void FrameWindow::SetChecked(int commandId, bool checked) {
    if (QAction* a = action(commandId)) a->setChecked(checked);
}

void FrameWindow::ShowAbout() {
    RunAboutDialog(this);
}

WindowId FrameWindow::CreateChild(const ChildWindowRequest& request) {
    QMdiArea* area = mdiClient_;
    ChildView* view = nullptr;
    switch (request.windowClass) {
    case WindowClass::PriceChild:
        view = new PriceChild(request.chart);
        break;
    case WindowClass::CorrChild:
        view = new CorrChild(request.chart);
        break;
    case WindowClass::OverlayChild:
        view = new OverlayChild(request.chart);
        break;
    case WindowClass::DataView:
    case WindowClass::ResView:
        view = CreateCompanionWindow(request.chart, request.windowClass);
        break;
    }
    if (!view) return 0;
    const bool companion =
        view->windowClass() == WindowClass::DataView || view->windowClass() == WindowClass::ResView;
    auto* sub = new QMdiSubWindow;
    sub->setWidget(view);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowIcon(companion ? FrameIcon() : GreenIcon());
    sub->setWindowTitle(QString::fromLocal8Bit(request.caption));
    area->addSubWindow(sub);
    switch (request.placement) {
    case WindowPlacement::SystemDefault: {
        // Cascade from the top left, as a new MDI child is placed by default.
        const int n = static_cast<int>(area->subWindowList().size()) - 1;
        QSize size =
            QSize(area->width() * 3 / 4, area->height() * 3 / 4).expandedTo(QSize(320, 240));
        // The companion views ask for their own width, or size.
        if (request.width > 0) size.setWidth(request.width);
        if (request.height > 0) size.setHeight(request.height);
        sub->resize(size);
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
    restoreFront_ = shell.restoringLayout ? sub : nullptr;
    return reinterpret_cast<WindowId>(sub);
}

std::vector<DeskWindow> FrameWindow::DeskWindows() {
    std::vector<DeskWindow> windows;
    for (QMdiSubWindow* sub : mdiClient_->subWindowList(QMdiArea::StackingOrder)) {
        ChildView* view = ViewOf(sub);
        const QRect r = sub->geometry();
        windows.push_back({view ? view->chart() : nullptr, sub->isMinimized(), r.x(), r.y(),
                           r.width(), r.height()});
    }
    return windows;
}

void FrameWindow::ChangeDataSource(WindowId window, Chart& chart) {
    ::velorin::ChangeDataSource(*this, window, chart);
}

int FrameWindow::ChartWindows(ChartWindowRef* out, int capacity) {
    // Top first: the stacking order lists the bottom window first.
    const QList<QMdiSubWindow*> subs = mdiClient_->subWindowList(QMdiArea::StackingOrder);
    int n = 0;
    for (auto it = subs.crbegin(); it != subs.crend() && n < capacity; ++it) {
        ChildView* view = ViewOf(*it);
        if (view && view->chart()) out[n++] = {reinterpret_cast<WindowId>(*it), view->chart()};
    }
    return n;
}

void FrameWindow::DestroyChild(WindowId window) {
    if (QMdiSubWindow* sub = SubWindowOf(window)) {
        mdiClient_->removeSubWindow(sub);
        delete sub;
    }
}

void FrameWindow::TimerTick(int timerId) {
    FrameTimerTick(timerId);
}

void FrameWindow::DestroyFrame() {
    if (destroyed_) return;
    destroyed_ = true;
    WriteSettingsAtExit(*this);
    realTimeTimer_->stop();
    refetchTimer_->stop();
    CloseAllCharts(*this);
    QApplication::quit();
}

void FrameWindow::closeEvent(QCloseEvent* event) {
    DestroyFrame();
    event->accept();
}

} // namespace velorin
