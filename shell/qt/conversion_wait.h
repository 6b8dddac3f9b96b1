#pragma once
// The wait for the GIF conversion of a Make All run, on the desktop: while
// the run waits for the tool's log the desk goes on painting, and a small
// box, "Converting charts..." with Cancel, lets the user give the run up.

#include <QPointer>

#include <string>

#include "shell/core/batch.h"

class QDialog;
class QEventLoop;
class QWidget;

namespace velorin {

// The command processor's converter with the desktop's wait. It is the
// converter in force from its construction to its end.
class ConversionWait final : public BitmapConverter {
  public:
    explicit ConversionWait(QWidget* owner);
    ~ConversionWait() override;
    ConversionWait(const ConversionWait&) = delete;
    ConversionWait& operator=(const ConversionWait&) = delete;

    void Start(const std::string& command) override;
    // Runs the event loop until the log is there, Cancel is pressed or 5
    // seconds have passed, with the box up; false once cancelled.
    bool Pause() override;
    // The box goes.
    void WaitEnded() override;

  private:
    void Cancel();

    QWidget* owner_;
    BitmapConverter* previous_;
    QPointer<QDialog> box_;
    QEventLoop* loop_ = nullptr; // the pause under way, if any
    bool cancelled_ = false;
};

} // namespace velorin
