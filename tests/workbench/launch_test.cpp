#include "workbench/launch.h"

#include "standalone/commands/plugin_session.h"
#include "tests/host/lottie_document.h"
#include "tests/support/own_folder.h"
#include "workbench/jostle_dlg.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <gtest/gtest.h>

namespace jostle::standalone {
namespace {

/// What a person does at the window: plays some frames, reads the title, and closes it.
struct Visitor {
    Visitor() {
        QObject::connect(&timer, &QTimer::timeout, [this] {
            if (auto* const window = qobject_cast<JostleDlg*>(QApplication::activeModalWidget())) {
                look(*window);
            }
        });
        timer.start(0);
    }
    void look(JostleDlg& window) {
        auto* const play = window.findChild<QAbstractButton*>("playBtn");
        if (!play->isChecked()) {
            play->click();
        }
        title = window.windowTitle();
        style = window.preview().style();
        frames = window.findChild<QLabel*>("frameSt")->text().toInt();
        if (frames > 1) {
            timer.stop();
            window.close();
        }
    }
    QString title;
    DrawStyle style;
    int frames = 0;
    QTimer timer;
};

/// Starts the plug-in on a host's composition of one body. @param goesOn  whether the preparation lets it
LaunchOutcome launchOn(DocumentHost& host, bool goesOn) {
    LaunchOutcome outcome = LaunchOutcome::NotRead;
    EXPECT_TRUE(runPlugin(host, [&](const HostContext& context) {
        outcome = launch(context, [&](Scene& scene, const ImportReport&) { return scene.bodyCount() == 1 && goesOn; });
    }));
    return outcome;
}

TEST(Launch, theWindowRunsOnTheHostsCompositionAndGivesEverythingBack) {
    const test::OwnFolder folder;
    folder.put("preferences", "# Settings of Jostle, version 1\n\n[QF Jostle 2]\n"
                              "Selected Joint Green = whole 128\nJoint Stroke Width = number 2.5\n");
    DocumentHost host(lottieDocument(solidLayer(""), R"(,"nm":"yard")"), "garden.json", "garden.json",
                      folder.path("preferences"));
    const Visitor visitor;
    EXPECT_EQ(launchOn(host, true), LaunchOutcome::Closed);
    EXPECT_EQ(visitor.title, "Jostle - garden - yard");
    EXPECT_GT(visitor.frames, 1);
    EXPECT_EQ(visitor.style.selectedJoint, (jostle::Rgba{255, 128, 0, 255}));
    EXPECT_EQ(visitor.style.jointStrokeWidth, 2.5f);
    EXPECT_TRUE(host.balance().allReturned()) << host.balance().text();
    EXPECT_TRUE(host.misuses().empty());
}

TEST(Launch, thePreparationMayCallItOff) {
    DocumentHost host(lottieDocument(solidLayer("")), "garden", "");
    EXPECT_EQ(launchOn(host, false), LaunchOutcome::CalledOff);
}

} // namespace
} // namespace jostle::standalone
