#include "base/user_seam.h"

namespace velorin {
namespace {

class SilentSeam final : public UserSeam {
  public:
    int ShowMessage(std::string_view, std::string_view, MessageIcon) override { return 1; }
    int AskFile(const FileDialogRequest&, std::string&) override { return 0; }
    void SetWaitCursor(bool) override {}
};

SilentSeam silentSeam;
UserSeam* currentSeam = &silentSeam;

} // namespace

UserSeam& Seam() {
    return *currentSeam;
}

UserSeam* InstallSeam(UserSeam* seam) {
    UserSeam* previous = currentSeam == &silentSeam ? nullptr : currentSeam;
    currentSeam = seam ? seam : &silentSeam;
    return previous;
}

} // namespace velorin
