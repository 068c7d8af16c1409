#include "workbench/launch.h"

#include "host/composition.h"
#include "host/host_layer_motion.h"
#include "host/host_string.h"
#include "host/layer_import.h"
#include "host/messages.h"
#include "persistence/user_preferences.h"
#include "preview/preferred_style.h"
#include "workbench/jostle_dlg.h"

#include <QApplication>
#include <QMessageBox>
#include <QPalette>
#include <QStyleFactory>

#include <array>
#include <memory>
#include <string>

namespace jostle {

namespace {

class DialogMessages final : public MessageSink {
public:
    void inform(std::string_view title, std::string_view text) override {
        const auto shown = [](std::string_view part) {
            return QString::fromUtf8(part.data(), static_cast<qsizetype>(part.size()));
        };
        QMessageBox::information(nullptr, shown(title), shown(text));
    }
};

// Dark grey, so that the colours of a composition stand out.
QPalette darkPalette() {
    const QColor window(38, 38, 38);
    const QColor text(190, 190, 190);
    const QColor faint(77, 77, 77);
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, QColor(24, 24, 24));
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::Button, QColor(52, 52, 52));
    palette.setColor(QPalette::Highlight, QColor(191, 140, 0));
    palette.setColor(QPalette::HighlightedText, QColor(20, 20, 20));
    palette.setColor(QPalette::ToolTipBase, QColor(24, 24, 24));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    return palette;
}

/// The application object of the process, made if there is none.
class Application {
public:
    Application() {
        if (QApplication::instance() == nullptr) {
            made_ = std::make_unique<QApplication>(argumentCount_, arguments_.data());
        }
        QApplication::setStyle(QStyleFactory::create("Fusion"));
        QApplication::setPalette(darkPalette());
    }

private:
    int argumentCount_ = 1;
    std::string name_ = "jostle";
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    std::unique_ptr<QApplication> made_;
};

QString projectName(HostChain& chain) {
    AEGP_ProjectH project = nullptr;
    std::array<char, AEGP_MAX_PROJ_NAME_SIZE> name{};
    if (!chain.call<&AEGP_ProjSuite8::AEGP_GetProjectByIndex>(A_long{0}, &project) || project == nullptr ||
        !chain.call<&AEGP_ProjSuite8::AEGP_GetProjectName>(project, name.data())) {
        return {};
    }
    name.back() = '\0';
    const QString whole = QString::fromLocal8Bit(name.data());
    const qsizetype end = whole.lastIndexOf('.');
    return end < 0 ? whole : whole.left(end);
}

QString compositionName(HostChain& chain) {
    AEGP_ItemH item = nullptr;
    HostString name(chain);
    if (!chain.call<&AEGP_ItemSuite13::AEGP_GetActiveItem>(&item) || item == nullptr ||
        !chain.call<&AEGP_ItemSuite13::AEGP_GetItemName>(chain.pluginId(), item, name.out())) {
        return {};
    }
    return QString::fromStdString(name.text());
}

void runWindow(const HostContext& context, Scene scene) {
    const UserPreferences preferences = readPreferences(context);
    scene.preferences = preferences.behavior();
    HostLayerMotion motion(context);
    SimulationView simulation(std::move(scene), motion);
    JostleDlg window(simulation);
    DrawStyle style = window.preview().style();
    applyPreferences(preferences, style);
    window.preview().setStyle(style);
    {
        HostChain chain(context); // names that cannot be read are left blank
        const QString project = projectName(chain);
        window.setNames(project, compositionName(chain));
    }
    window.setWindowModality(Qt::WindowModal);
    window.show();
    window.preview().zoomToFit();
    simulation.start();
    QApplication::exec();
}

} // namespace

LaunchOutcome launch(const HostContext& context, const PrepareScene& prepare) {
    const Application application;
    DialogMessages messages;
    Scene scene;
    const ImportReport report = initFromComposition(context, scene, &messages);
    if (report.error != A_Err_NONE) {
        return LaunchOutcome::NotRead;
    }
    if (prepare && !prepare(scene, report)) {
        return LaunchOutcome::CalledOff;
    }
    runWindow(context, std::move(scene));
    return LaunchOutcome::Closed;
}

} // namespace jostle
