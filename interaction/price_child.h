#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// The window of price and analysis charts.

#include "interaction/child_view.h"

namespace velorin {

class PriceChild : public ChildView {
    Q_OBJECT
  public:
    explicit PriceChild(Chart* chart, QWidget* parent = nullptr);
    ~PriceChild() override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace velorin
