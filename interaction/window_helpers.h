#pragma once
// What every chart window shares on the screen: the window port over a
// desk child with its backing image, the ring-shaped tool cursor, and popup
// menus built from item lists.

#include <QCursor>
#include <QImage>

#include <cstddef>
#include <functional>
#include <vector>

#include "interaction/chart_window_port.h"
#include "interaction/child_view.h"
#include "interaction/handle_menu.h"

class QMenu;

namespace velorin {

// The tool cursor: a ring with its hot spot in the middle.
const QCursor& RingCursor();

// A chart window of the desk: the port the chart commands and tools use,
// over a child that paints into a backing image and repaints its readout
// rectangle alone.
class ChartWindow : public ChildView, public ChartWindowPort {
    Q_OBJECT
  public:
    using ChildView::ChildView;

    // ChartWindowPort
    WindowId Id() const override;
    int Right() const override { return width(); }
    int Bottom() const override { return height(); }
    std::string Caption() const override;
    void SetCaption(const std::string& caption) override;
    void Capture(bool on) override;
    void SetRingCursor() override;
    void RestoreCursor() override;
    void InvalidateReadout() override;

    const QImage& backing() const { return backing_; }

  protected:
    QImage backing_;
    bool dirty_ = true;
    bool readoutDirty_ = false;

  private:
    QCursor savedCursor_;
};

// Adds `items` from `at` on to `menu`, submenus nested, until the end or an
// end-of-submenu entry; each action sends its id to `run`.
void AddMenuItems(QMenu* menu, const std::vector<MenuItem>& items, std::size_t& at,
                  const std::function<void(int)>& run);

} // namespace velorin
