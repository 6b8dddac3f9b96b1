#pragma once
// A UserSeam for tests: records every message, answers file dialogs, combo
// dialogs and the colour dialog from queues of scripted answers, and counts
// wait-cursor calls. Header-only. What is not scripted is cancelled.
//
//   velorin::test_support::RecordingSeam seam;      // installs itself
//   seam.QueueFile("/tmp/x/ACME.PRC");                // next AskFile picks it
//   ... code under test ...
//   EXPECT_EQ(seam.LastText(), "DataFile Read Error");
//
//   seam.QueueComboAnswer({"300"});                   // next combo dialog: OK
//   seam.QueueColour(0x00FF8000);                     // next colour dialog: OK
//
// The namespace is not "testing", so that code inside namespace velorin can
// still name GoogleTest's ::testing unqualified.

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/user_seam.h"

namespace velorin::test_support {

struct RecordedMessage {
    std::string text;
    std::string caption;
    MessageIcon icon;
};

struct ScriptedFileAnswer {
    int result = 0;   // 1 chosen, 0 cancelled, -1 the dialog failed
    std::string path; // given back when result is 1
};

// One scripted answer to a combo dialog: OK with these texts (fields beyond
// the list keep their text), or Cancel.
struct ScriptedComboAnswer {
    bool ok = false;
    std::vector<std::string> texts;
};

class RecordingSeam : public UserSeam {
  public:
    // Installs itself on construction and puts the previous seam back on
    // destruction (pass install = false to install it by hand).
    explicit RecordingSeam(bool install = true) {
        if (install) {
            previous_ = InstallSeam(this);
            installed_ = true;
        }
    }
    ~RecordingSeam() override {
        if (installed_) InstallSeam(previous_);
    }
    RecordingSeam(const RecordingSeam&) = delete;
    RecordingSeam& operator=(const RecordingSeam&) = delete;

    // --- UserSeam ---------------------------------------------------------
    int ShowMessage(std::string_view text, std::string_view caption, MessageIcon icon) override {
        messages.push_back(RecordedMessage{std::string(text), std::string(caption), icon});
        return 1; // OK
    }

    int AskFile(const FileDialogRequest& request, std::string& pathOut) override {
        fileRequests.push_back(request);
        if (fileAnswers.empty()) return 0; // nothing scripted: the user cancels
        ScriptedFileAnswer answer = fileAnswers.front();
        fileAnswers.pop_front();
        if (answer.result == 1) pathOut = answer.path;
        return answer.result;
    }

    void SetWaitCursor(bool on) override {
        waitCursorOnCalls += on ? 1 : 0;
        waitCursorDepth += on ? 1 : -1;
    }

    // Records the dialog as it was shown, then gives the scripted answer;
    // with nothing scripted the user cancels (1).
    int RunComboDialog(ComboDialog& dialog) override {
        comboDialogs.push_back(dialog);
        if (comboAnswers.empty()) return 1;
        ScriptedComboAnswer answer = std::move(comboAnswers.front());
        comboAnswers.pop_front();
        if (!answer.ok) return 1;
        for (std::size_t i = 0; i < answer.texts.size() && i < dialog.fields.size(); ++i)
            dialog.fields[i].text = answer.texts[i];
        return 0;
    }

    // Records the start colour; with nothing scripted the user cancels (0).
    int ChooseColour(std::uint32_t& rgb) override {
        colourRequests.push_back(rgb);
        if (colourAnswers.empty()) return 0;
        const std::optional<std::uint32_t> answer = colourAnswers.front();
        colourAnswers.pop_front();
        if (!answer) return 0;
        rgb = *answer;
        return 1;
    }

    // --- Scripting ----------------------------------------------------------
    void QueueFile(std::string path) {
        fileAnswers.push_back(ScriptedFileAnswer{1, std::move(path)});
    }
    void QueueCancel() { fileAnswers.push_back(ScriptedFileAnswer{0, {}}); }
    void QueueDialogFailure() { fileAnswers.push_back(ScriptedFileAnswer{-1, {}}); }
    // OK with the fields' texts, in field order.
    void QueueComboAnswer(std::vector<std::string> texts) {
        comboAnswers.push_back(ScriptedComboAnswer{true, std::move(texts)});
    }
    void QueueColour(std::uint32_t rgb) { colourAnswers.emplace_back(rgb); }

    // --- Reading back -------------------------------------------------------
    std::size_t MessageCount() const { return messages.size(); }
    std::string LastText() const { return messages.empty() ? std::string() : messages.back().text; }
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const RecordedMessage& m : messages)
            texts.push_back(m.text);
        return texts;
    }
    void Clear() {
        messages.clear();
        fileRequests.clear();
        fileAnswers.clear();
        comboDialogs.clear();
        comboAnswers.clear();
        colourRequests.clear();
        colourAnswers.clear();
        waitCursorOnCalls = waitCursorDepth = 0;
    }

    std::vector<RecordedMessage> messages;
    std::vector<FileDialogRequest> fileRequests;
    std::deque<ScriptedFileAnswer> fileAnswers;
    std::vector<ComboDialog> comboDialogs; // as shown, before the answer
    std::deque<ScriptedComboAnswer> comboAnswers;
    std::vector<std::uint32_t> colourRequests;              // the start colour of each
    std::deque<std::optional<std::uint32_t>> colourAnswers; // nullopt: Cancel
    int waitCursorOnCalls = 0;
    int waitCursorDepth = 0; // on minus off: 0 when every wait cursor was restored

  private:
    UserSeam* previous_ = nullptr;
    bool installed_ = false;
};

} // namespace velorin::test_support
