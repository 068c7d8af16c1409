#include "workbench/jostle_dlg.h"

#include "workbench/timeline.h"
#include "workbench/transport_row.h"
#include "workbench/zoom_row.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace jostle {

JostleDlg::JostleDlg(SimulationView& simulation, PreviewWidget::Painter painter)
    : simulation_(simulation),
      preview_(new PreviewWidget(simulation, painter)),
      timeline_(new Timeline(simulation)),
      zoomRow_(new ZoomRow(simulation, *preview_)),
      transportRow_(new TransportRow(simulation)),
      toolsNoteSt_(new QLabel) {
    setObjectName("JostleDlgClass");
    resize(QSize(1306, 850).boundedTo(screen()->availableSize()));
    toolsNoteSt_->setObjectName("toolsNoteSt");
    connect(transportRow_, &TransportRow::noteChanged, toolsNoteSt_, &QLabel::setText);
    layOut();
    addShortcuts();
}

void JostleDlg::setNames(const QString& project, const QString& composition) {
    setWindowTitle(QString("Jostle - %1 - %2").arg(project, composition));
}

void JostleDlg::layOut() {
    auto* centre = new QWidget;
    auto* column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 6);
    column->setSpacing(2);
    column->addWidget(preview_, 1);
    auto* edge = new QFrame;
    edge->setFixedHeight(1);
    edge->setStyleSheet("background-color: rgb(18,18,18);");
    column->addWidget(edge);
    column->addWidget(timeline_);
    auto* zoom = new QHBoxLayout;
    zoom->setContentsMargins(8, 0, 4, 0);
    zoom->addWidget(zoomRow_);
    column->addLayout(zoom);
    // The buttons stay in the middle whatever the note says.
    auto* transport = new QHBoxLayout;
    transport->setContentsMargins(12, 0, 12, 0);
    transport->addWidget(toolsNoteSt_, 1);
    transport->addWidget(transportRow_);
    transport->addStretch(1);
    column->addLayout(transport);
    setCentralWidget(centre);
}

void JostleDlg::addShortcuts() {
    const auto add = [this](const QKeySequence& keys, auto* receiver, auto slot) {
        connect(new QShortcut(keys, this), &QShortcut::activated, receiver, slot);
    };
    add(Qt::Key_0, transportRow_, &TransportRow::OnPlayShortcut);
    add(Qt::Key_Home, transportRow_, &TransportRow::OnRestartBtn);
    add(Qt::Key_1, transportRow_, &TransportRow::OnStepBtn);
    add(Qt::Key_PageDown, transportRow_, &TransportRow::OnStepBtn);
    add(Qt::Key_2, transportRow_, &TransportRow::OnRepeatShortcut);
    add(Qt::Key_Z, zoomRow_, &ZoomRow::OnZoomFitBtn);
}

} // namespace jostle
