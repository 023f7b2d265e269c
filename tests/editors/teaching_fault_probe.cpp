// SPDX-License-Identifier: MIT
// A program that does one step of teaching the database, so that a test can fail or kill it at any of its system calls.
// FOLDER holds app, local, share and source as TeachingFaults lays them out.
//
//   quillon_teaching_fault_probe retest FOLDER    filters the corrupt files of the list J1, retests those of the first
//   quillon_teaching_fault_probe done FOLDER      adds the term "5,NEW,T" to the extension qlx and leaves the editor
//
// Exit status: 0 done, 3 a box was shown, 2 wrong usage.
#include <algorithm>
#include <string_view>

#include "editors/extension_editor.h"
#include "job/job.h"
#include "viewer/list_viewer.h"

namespace {

using namespace quillon;

constexpr int kDone = 0;
constexpr int kWrongUsage = 2;
constexpr int kReported = 3;

class NotingDialogs final : public Dialogs {
public:
    BoxAnswer show(const MessageBox& /*box*/) override {
        shown = true;
        return BoxAnswer::No;
    }
    std::optional<std::string> input(const std::string&, const std::string&, const std::string&) override { return {}; }
    std::optional<NativePath> pickFolder(const std::string&, const NativePath&) override { return {}; }
    std::vector<NativePath> pickFiles(const FilePick&) override { return {}; }

    bool shown = false;
};

class NoLoop final : public EventLoop {
public:
    void turn() override {}
};

class NoScreen final : public ScreenHost {
public:
    void showState() override {}
    void beep() override {}
    void focus(const char* /*control*/) override {}
};

class TeachingRun {
public:
    explicit TeachingRun(const NativePath& folder) : installation_(folder / "app") {
        installation_.settings.localPath.assign(pageFromPath(folder / "local"));
        installation_.settings.sharedPath.assign(pageFromPath(folder / "share"));
        installation_.settings.useSharedDb = 1;
        installation_.refreshPathVariables();
        job_.messages = ReportMessages::fallback();
        job_.state.options.jobId = "J1";
    }

    void retest() {
        ListViewer viewer(viewedJob(job_), screen_);
        viewer.load();
        const auto& all = viewer.state.categories;
        const auto corrupt = std::find(all.begin(), all.end(), job_.messages[Grade::Corrupt]);
        viewer.chooseCategory(static_cast<int>(corrupt - all.begin()));
        viewer.filter();
        viewer.selectRow(0);
        viewer.retest();
    }

    void done() {
        ExtensionEditor editor(installation_, dialogs_, job_.kept(), job_.messages, screen_, [] {});
        editor.load({1, u"qlx", {}, {}, {}});
        editor.state.position = "5";
        editor.state.term = "NEW";
        editor.addOrUpdate();
        editor.save();
    }

    [[nodiscard]] bool wasTold() const { return dialogs_.shown; }

private:
    SystemClock clock_;
    DateTexts dates_{"C"};
    NotingDialogs dialogs_;
    NoLoop loop_;
    NoScreen screen_;
    Installation installation_;
    Job job_{installation_, {clock_, dates_, dialogs_, loop_, "LAB7"}};
};

}  // namespace

int main(int count, char* arguments[]) {
    if (count != 3)
        return kWrongUsage;
    const std::string_view what = arguments[1];
    TeachingRun teaching(arguments[2]);
    if (what == "retest")
        teaching.retest();
    else if (what == "done")
        teaching.done();
    else
        return kWrongUsage;
    return teaching.wasTold() ? kReported : kDone;
}
