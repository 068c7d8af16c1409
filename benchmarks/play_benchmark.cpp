// Does the window hold the rate of the composition? play_benchmark [pyramid or circles [CIRCLES [SECONDS]]], on a
// display (xvfb-run).
//
// Plays a scene in the real window, with its preview 1280 pixels wide, and prints frames a second by the wall clock
// beside those of the composition, and the processor's time for a frame, all threads together.

#include "benchmarks/measure.h"
#include "editing/simulation_view.h"
#include "tests/support/scenes.h"
#include "workbench/jostle_dlg.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <cstdio>
#include <string_view>

int main(int count, char** arguments) {
    QApplication application(count, arguments);
    const std::string_view scene = count > 1 ? arguments[1] : "circles";
    const bool isPyramid = scene == "pyramid";
    const int circles = jostle::argument(count, arguments, 2, 300);
    const int seconds = jostle::argument(count, arguments, 3, 8);
    if ((!isPyramid && scene != "circles") || circles < 1 || seconds < 1) {
        std::fputs("usage: play_benchmark [pyramid or circles [CIRCLES [SECONDS]]], both numbers above 0\n", stderr);
        return 2;
    }
    jostle::StillLayers layers;
    jostle::SimulationView view(isPyramid ? jostle::boxPyramid() : jostle::circlesInBox(circles), layers);
    jostle::JostleDlg window(view);
    window.show();
    window.preview().zoomToFit();
    view.start();
    view.play();
    QElapsedTimer watch;
    double processorStart = 0.0;
    int firstFrame = 0;
    // The first second is for the window to come up.
    QTimer::singleShot(1000, [&] {
        watch.start();
        processorStart = jostle::processorMilliseconds(CLOCK_PROCESS_CPUTIME_ID);
        firstFrame = view.frame();
    });
    QTimer::singleShot(1000 * (seconds + 1), [&] {
        const double wall = static_cast<double>(watch.elapsed());
        const int frames = view.frame() - firstFrame;
        const double processor = jostle::processorMilliseconds(CLOCK_PROCESS_CPUTIME_ID) - processorStart;
        std::printf("%d bodies, preview %d by %d: %.1f of %.1f frames a second, %.2f ms of the processor a frame\n",
                    view.scene().bodyCount(), window.preview().width(), window.preview().height(),
                    1000.0 * frames / wall, view.scene().fps, processor / frames);
        QApplication::quit();
    });
    return QApplication::exec();
}
