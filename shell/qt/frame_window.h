#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// The frame: menu bar, the desk of child windows, the two periodic timers,
// and the dispatcher of every frame command.

#include <QHash>
#include <QMainWindow>
#include <QPointer>

#include "chart_model/price_chart.h"
#include "shell/core/menu_def.h"

class QAction;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QTimer;

namespace velorin {

class ChildView;

class FrameWindow final : public QMainWindow, private MenuModel {
    Q_OBJECT
  public:
    explicit FrameWindow(QWidget* parent = nullptr);
    ~FrameWindow() override;

    static FrameWindow* instance() { return instance_; }

    // Every command of the menu bar and the button bar comes through here.
    void FrameCommand(int commandId);

    // The child a command works on: the active one, or a minimised window
    // lying directly under it. May be null.
    QMdiSubWindow* FindActiveChild() const;
    // The chart a chart command works on; null (and a message for the two
    // companion views) when there is none.
    Chart* RequireChart();
    void CloseAllChildren();
    void UpdateMenuState();
    void RepaintAllCharts();

    QMdiArea* mdiClient() const { return mdiClient_; }
    QAction* action(int commandId) const { return actions_.value(commandId, nullptr); }
    // Timer work, exposed for tests: what one tick of timer 1 or 3 does.
    void TimerTick(int timerId);
    // Counters of the timer work done (tests read them).
    int pendingRefreshRuns() const { return pendingRefreshRuns_; }
    int refetchRuns() const { return refetchRuns_; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    // MenuModel
    bool IsGreyed(int id) const override;
    void SetGreyed(int id, bool greyed) override;

    void BuildMenus();
    void FillWindowMenu();
    void DestroyFrame();
    void ConnectDataFile();
    void SetThickness(int commandId);
    // The chart limit, with its message when reached.
    bool ChartLimitOk();
    // The analyses of one Make All, tiled when all of them opened.
    void MakeAll(bool prices);
    // Commands only the button bar sends (10703 to 10716).
    void ButtonCommand(int id);
    static WindowId CreateChild(const ChildWindowRequest& request);

    static FrameWindow* instance_;
    QMdiArea* mdiClient_ = nullptr;
    QMenu* windowMenu_ = nullptr;
    QPointer<QMdiSubWindow> lastActive_;
    QHash<int, QAction*> actions_;
    QTimer* realTimeTimer_ = nullptr;
    QTimer* refetchTimer_ = nullptr;
    bool destroyed_ = false;
    int pendingRefreshRuns_ = 0;
    int refetchRuns_ = 0;
};

} // namespace velorin
