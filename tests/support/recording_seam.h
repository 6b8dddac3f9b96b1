#pragma once
// A UserSeam for tests: records every message, answers file dialogs from a
// queue of scripted answers, and counts wait-cursor calls. Header-only.
//
//   velorin::test_support::RecordingSeam seam;      // installs itself
//   seam.QueueFile("/tmp/x/ACME.PRC");                // next AskFile picks it
//   ... code under test ...
//   EXPECT_EQ(seam.LastText(), "DataFile Read Error");
//
// The namespace is not "testing", so that code inside namespace velorin can
// still name GoogleTest's ::testing unqualified.

#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/core/user_seam.h"

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
        if (messageAnswers.empty()) return defaultMessageAnswer;
        const int answer = messageAnswers.front();
        messageAnswers.pop_front();
        return answer;
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
        if (on) {
            ++waitCursorOnCalls;
            ++waitCursorDepth;
        } else {
            ++waitCursorOffCalls;
            --waitCursorDepth;
        }
    }

    // --- Scripting ----------------------------------------------------------
    void QueueFile(std::string path) {
        fileAnswers.push_back(ScriptedFileAnswer{1, std::move(path)});
    }
    void QueueCancel() { fileAnswers.push_back(ScriptedFileAnswer{0, {}}); }
    void QueueDialogFailure() { fileAnswers.push_back(ScriptedFileAnswer{-1, {}}); }
    void QueueMessageAnswer(int answer) { messageAnswers.push_back(answer); }

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
        messageAnswers.clear();
        waitCursorOnCalls = waitCursorOffCalls = waitCursorDepth = 0;
    }

    std::vector<RecordedMessage> messages;
    std::vector<FileDialogRequest> fileRequests;
    std::deque<ScriptedFileAnswer> fileAnswers;
    std::deque<int> messageAnswers; // answers to ShowMessage, in order
    int defaultMessageAnswer = 1;   // when messageAnswers is empty (1 = OK)
    int waitCursorOnCalls = 0;
    int waitCursorOffCalls = 0;
    int waitCursorDepth = 0; // on minus off: 0 when every wait cursor was restored

  private:
    UserSeam* previous_ = nullptr;
    bool installed_ = false;
};

} // namespace velorin::test_support
