#include "workbench/launch.h"

#include "standalone/commands/plugin_session.h"
#include "standalone/lottie/reader.h"
#include "tests/support/own_folder.h"
#include "workbench/jostle_dlg.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <gtest/gtest.h>

#include <string>

namespace jostle::standalone {
namespace {

constexpr const char* documentText =
    R"({"v":"5.7.0","fr":10,"ip":0,"op":20,"w":200,"h":100,"nm":"yard","layers":[
{"ty":1,"nm":"box","ind":1,"ip":0,"op":20,"st":0,"sw":20,"sh":10,"sc":"#ff0000",
 "ks":{"o":{"a":0,"k":100},"r":{"a":0,"k":0},"p":{"a":0,"k":[50,50,0]},"a":{"a":0,"k":[10,5,0]},
 "s":{"a":0,"k":[100,100,100]}}}]})";

/// What a person does at the window: plays some frames, reads the title, and closes it.
class Visitor {
public:
    Visitor() {
        QObject::connect(&timer_, &QTimer::timeout, [this] { look(); });
        timer_.start(0);
    }
    QString title;
    DrawStyle style;
    int frames = 0;

private:
    void look() {
        auto* const window = qobject_cast<JostleDlg*>(QApplication::activeModalWidget());
        if (window == nullptr) {
            return;
        }
        auto* const play = window->findChild<QAbstractButton*>("playBtn");
        if (!play->isChecked()) {
            play->click();
        }
        title = window->windowTitle();
        style = window->preview().style();
        frames = window->findChild<QLabel*>("frameSt")->text().toInt();
        if (frames > 1) {
            timer_.stop();
            window->close();
        }
    }
    QTimer timer_;
};

TEST(Launch, theWindowRunsOnTheHostsCompositionAndGivesEverythingBack) {
    ReadResult read = readLottie(documentText, "yard.json");
    ASSERT_TRUE(read) << read.error;
    const test::OwnFolder folder;
    folder.put("preferences", "# Settings of Jostle, version 1\n\n[QF Jostle 2]\n"
                              "Selected Joint Green = whole 128\nJoint Stroke Width = number 2.5\n");
    DocumentHost host(std::move(read.composition), "garden.json", "garden.json", folder.path("preferences"));
    LaunchOutcome outcome = LaunchOutcome::NotRead;
    const Visitor visitor;
    EXPECT_TRUE(runPlugin(host, [&](const HostContext& context) {
        outcome = launch(context, [](Scene& scene, const ImportReport&) { return scene.bodyCount() == 1; });
    }));
    EXPECT_EQ(outcome, LaunchOutcome::Closed);
    EXPECT_EQ(visitor.title, "Jostle - garden - yard");
    EXPECT_GT(visitor.frames, 1);
    EXPECT_EQ(visitor.style.selectedJoint, (jostle::Rgba{255, 128, 0, 255}));
    EXPECT_EQ(visitor.style.jointStrokeWidth, 2.5f);
    EXPECT_TRUE(host.balance().allReturned()) << host.balance().text();
    EXPECT_TRUE(host.misuses().empty());
}

TEST(Launch, thePreparationMayCallItOff) {
    ReadResult read = readLottie(documentText, "yard.json");
    DocumentHost host(std::move(read.composition), "garden", "");
    LaunchOutcome outcome = LaunchOutcome::NotRead;
    EXPECT_TRUE(runPlugin(host, [&](const HostContext& context) {
        outcome = launch(context, [](Scene&, const ImportReport&) { return false; });
    }));
    EXPECT_EQ(outcome, LaunchOutcome::CalledOff);
}

} // namespace
} // namespace jostle::standalone
