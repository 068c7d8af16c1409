#pragma once

#include "editing/simulation_view.h"
#include "preview/preview_widget.h"

#include <QMainWindow>

class QLabel;

namespace jostle {

class Timeline;
class TransportRow;
class ZoomRow;

/// The main window: the preview with what runs the simulation and how it is looked at.
class JostleDlg final : public QMainWindow {
    Q_OBJECT

public:
    /// @param simulation  must outlive the window
    explicit JostleDlg(SimulationView& simulation, PreviewWidget::Painter painter = PreviewWidget::Painter::WhatWorks);

    /// Titles the window with what it is about.
    void setNames(const QString& project, const QString& composition);

    [[nodiscard]] PreviewWidget& preview() { return *preview_; }

private:
    void layOut();
    void addShortcuts();

    SimulationView& simulation_;
    PreviewWidget* preview_;
    Timeline* timeline_;
    ZoomRow* zoomRow_;
    TransportRow* transportRow_;
    QLabel* toolsNoteSt_;
};

} // namespace jostle
