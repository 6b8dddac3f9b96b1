#pragma once
// The frame: menu bar, the desk of child windows and the two periodic
// timers. It builds the menus and forwards every command id to the
// Qt-free FrameCommand, and carries out what the commands ask of windows.

#include <QHash>
#include <QMainWindow>
#include <QPointer>

#include "shell/core/button_bar.h"
#include "shell/core/frame_commands.h"

class QAction;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QTimer;

namespace velorin {

class ButtonBarWidget;
class ChildView;

class FrameWindow final : public QMainWindow, private Frame {
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

    QMdiArea* mdiClient() const { return mdiClient_; }
    QAction* action(int commandId) const { return actions_.value(commandId, nullptr); }
    // What one tick of timer 1 or 3 does (tests call it).
    void TimerTick(int timerId);
    // The button bar above the desk.
    ButtonBarWidget* buttonBar() const { return buttonBar_; }
    // The hide-hint message, sent on every key press: the button hint goes
    // and the bar gives the mouse back.
    void HideHint();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    // MenuModel
    bool IsGreyed(int id) const override;
    void SetGreyed(int id, bool greyed) override;
    // Desk
    WindowId CreateChild(const ChildWindowRequest& request) override;
    Chart* ActiveChart(WindowId* windowOut) override;
    Chart* ChartOf(WindowId window) override;
    WindowId PickSecondChart(WindowId first, const char* prompt) override;
    void Invalidate(WindowId window) override;
    void RepaintAllCharts() override;
    void Tile(bool horizontal) override;
    void CloseAllChildren() override;
    void MenuStateChanged() override;
    void OpenDataView(WindowId window, Chart& chart) override;
    void OpenLevelsView(WindowId window, Chart& chart) override;
    void ResetDataView(WindowId window) override;
    void RefreshDataView(WindowId window) override;
    void UpdateLevelsViews() override;
    void FollowCrosshair(int sourceSlot, int row) override;
    int ChartWindows(ChartWindowRef* out, int capacity) override;
    void ChangeDataSource(WindowId window, Chart& chart) override;
    // Frame
    void SetChecked(int commandId, bool checked) override;
    void Cascade() override;
    void ArrangeIcons() override;
    void DestroyFrame() override;
    void ShowAbout() override;
    void SendChartCommand(WindowId window, int commandId) override;
    void ShowHelpContents() override;
    ButtonState* ButtonStates() override;
    std::vector<DeskWindow> DeskWindows() override;
    void DestroyChild(WindowId window) override;
    bool CaptureDesk(Dib& out) override;
    void ShowSavingBox(bool shown) override;
    int PrintDesk(const char* title) override;
    void PrinterSetup() override;

    void BuildMenus();
    void FillWindowMenu();
    // The buttons show the states the menu rules wrote.
    void SyncButtons();
    ChildView* ViewOfWindow(WindowId window) const;
    QMdiSubWindow* SubWindowOf(WindowId window) const;

    static FrameWindow* instance_;
    QMdiArea* mdiClient_ = nullptr;
    QMenu* windowMenu_ = nullptr;
    QPointer<QMdiSubWindow> lastActive_;
    // While a layout is restored: the child made last, which the next
    // restored chart takes its source from even when it is hidden.
    QPointer<QMdiSubWindow> restoreFront_;
    QHash<int, QAction*> actions_;
    ButtonBar buttons_{};
    ButtonBarWidget* buttonBar_ = nullptr;
    QTimer* realTimeTimer_ = nullptr;
    QTimer* refetchTimer_ = nullptr;
    bool destroyed_ = false;
    Desk* previousDesk_ = nullptr;
    QPointer<QDialog> savingBox_;
};

} // namespace velorin
