#pragma once

#include "editing/simulation_view.h"
#include "preview/preview_widget.h"

#include <QColor>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QMenu;
class QSlider;
class QToolButton;

namespace jostle {

/// A frame's number in at least five digits.
[[nodiscard]] QString frameText(int frame);
/// Frames per second, as they are and as they should be, each with a decimal: "09.5/25.0".
[[nodiscard]] QString rateText(float rate, double fps);

/// How the preview shows the simulation: zoom, background, what is drawn; and at its end the rate and the frame.
class ZoomRow final : public QWidget {
    Q_OBJECT

public:
    /// @param simulation, preview  must outlive the row
    ZoomRow(SimulationView& simulation, PreviewWidget& preview, QWidget* parent = nullptr);

    void setBackground(const QColor& color);

public slots:
    void OnZoomOutBtn();
    void OnZoomInBtn();
    void OnZoomFitBtn();
    void OnBGColorBtn();
    void OnViewOptionsShapes(bool shown) { setOption(&ViewOptions::shapes, shown); }
    void OnViewOptionsMesh(bool shown) { setOption(&ViewOptions::mesh, shown); }
    void OnViewOptionsBoundingBox(bool shown) { setOption(&ViewOptions::boundingBox, shown); }
    void OnViewOptionsLocalAxes(bool shown) { setOption(&ViewOptions::localAxes, shown); }
    void OnViewOptionsJoints(bool shown) { setOption(&ViewOptions::joints, shown); }
    void OnViewOptionsCompBounds(bool shown) { setOption(&ViewOptions::compBounds, shown); }

private:
    void addZoomButtons(QHBoxLayout& row);
    void addViewButtons(QHBoxLayout& row);
    void addLabels(QHBoxLayout& row);
    QToolButton* addButton(QHBoxLayout& row, const char* name, const QIcon& icon, const QString& tip);
    QMenu* viewOptionsMenu();
    void setOption(bool ViewOptions::*option, bool shown);

    SimulationView& simulation_;
    PreviewWidget& preview_;
    QSlider* zoomSld_ = nullptr;
    QToolButton* bgColorBtn_ = nullptr;
};

} // namespace jostle
