#pragma once
// A UserSeam for tests: records every message, answers file dialogs, combo
// dialogs and the colour dialog from queues of scripted answers, and counts
// wait-cursor calls. Header-only. What is not scripted is cancelled.
//
//   velorin::test_support::RecordingSeam seam;      // installs itself
//   seam.QueueFile(dir.PathOf("ACME.PRC"));           // next AskFile picks it
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

class RecordingSeam : public UserSeam {
  public:
    // Installs itself; puts the previous seam back when it goes.
    RecordingSeam() : previous_(InstallSeam(this)) {}
    ~RecordingSeam() override { InstallSeam(previous_); }
    RecordingSeam(const RecordingSeam&) = delete;
    RecordingSeam& operator=(const RecordingSeam&) = delete;

    // --- UserSeam ---------------------------------------------------------
    int ShowMessage(std::string_view text, std::string_view caption, MessageIcon icon) override {
        messages.push_back(RecordedMessage{std::string(text), std::string(caption), icon});
        return 1; // OK
    }
    // The next scripted answer: 1 with its path, 0 cancelled, -1 the dialog failed.
    int AskFile(const FileDialogRequest& request, std::string& pathOut) override {
        fileRequests.push_back(request);
        if (fileAnswers.empty()) return 0;
        const auto [result, path] = fileAnswers.front();
        fileAnswers.pop_front();
        if (result == 1) pathOut = path;
        return result;
    }
    void SetWaitCursor(bool on) override {
        waitCursorOnCalls += on ? 1 : 0;
        waitCursorDepth += on ? 1 : -1;
    }
    // Records the dialog as shown, then answers OK with the scripted texts
    // (fields beyond them keep theirs); with nothing scripted, Cancel (1).
    int RunComboDialog(ComboDialog& dialog) override {
        comboDialogs.push_back(dialog);
        if (comboAnswers.empty()) return 1;
        const std::vector<std::string> texts = comboAnswers.front();
        comboAnswers.pop_front();
        for (std::size_t i = 0; i < texts.size() && i < dialog.fields.size(); ++i)
            dialog.fields[i].text = texts[i];
        return 0;
    }
    // Records the start colour; with nothing scripted the user cancels (0).
    int ChooseColour(std::uint32_t& rgb) override {
        colourRequests.push_back(rgb);
        if (colourAnswers.empty()) return 0;
        rgb = colourAnswers.front();
        colourAnswers.pop_front();
        return 1;
    }

    // --- Scripting ----------------------------------------------------------
    void QueueFile(std::string path) { fileAnswers.emplace_back(1, std::move(path)); }
    void QueueCancel() { fileAnswers.emplace_back(0, std::string()); }
    void QueueDialogFailure() { fileAnswers.emplace_back(-1, std::string()); }
    void QueueComboAnswer(std::vector<std::string> texts) { comboAnswers.push_back(texts); }
    void QueueColour(std::uint32_t rgb) { colourAnswers.push_back(rgb); }

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
        messages.clear(), fileRequests.clear(), fileAnswers.clear(), comboDialogs.clear();
        comboAnswers.clear(), colourRequests.clear(), colourAnswers.clear();
        waitCursorOnCalls = waitCursorDepth = 0;
    }

    std::vector<RecordedMessage> messages;
    std::vector<FileDialogRequest> fileRequests;
    std::deque<std::pair<int, std::string>> fileAnswers;
    std::vector<ComboDialog> comboDialogs; // as shown, before the answer
    std::deque<std::vector<std::string>> comboAnswers;
    std::vector<std::uint32_t> colourRequests; // the start colour of each
    std::deque<std::uint32_t> colourAnswers;
    int waitCursorOnCalls = 0;
    int waitCursorDepth = 0; // on minus off: 0 when every wait cursor was restored

  private:
    UserSeam* previous_ = nullptr;
};

} // namespace velorin::test_support
