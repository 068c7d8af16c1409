#include "workbench/transport_row.h"

#include "workbench/icons.h"

#include <QHBoxLayout>

namespace jostle {

TransportRow::TransportRow(SimulationView& simulation, QWidget* parent) : QWidget(parent), simulation_(simulation) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    restartBtn_ = addButton(*row, "restartBtn", icon(Sign::Restart), tr("Go to first frame (Home)"));
    playBtn_ = addButton(*row, "playBtn", icon(Sign::Play, Sign::Pause), tr("Play or pause (0)"));
    stepBtn_ = addButton(*row, "stepBtn", icon(Sign::Step), tr("Go to next frame (1, Page Down)"));
    repeatBtn_ = addButton(*row, "repeatBtn", icon(Sign::Repeat), tr("Repeat from 0 to current frame (2)"));
    playBtn_->setCheckable(true);
    repeatBtn_->setCheckable(true);
    connect(restartBtn_, &QToolButton::clicked, this, &TransportRow::OnRestartBtn);
    connect(playBtn_, &QToolButton::clicked, this, &TransportRow::OnPlayBtn);
    connect(stepBtn_, &QToolButton::clicked, this, &TransportRow::OnStepBtn);
    connect(repeatBtn_, &QToolButton::clicked, this, &TransportRow::OnRepeatBtn);
    connect(&simulation, &SimulationView::transportChanged, this, &TransportRow::showState);
}

QToolButton* TransportRow::addButton(QHBoxLayout& row, const char* name, const QIcon& icon, const QString& tip) {
    auto* button = new QToolButton(this);
    button->setObjectName(name);
    button->setIcon(icon);
    button->setIconSize({22, 22});
    button->setFixedSize(44, 34);
    button->setAutoRaise(true);
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    row.addWidget(button);
    return button;
}

void TransportRow::OnRestartBtn() {
    simulation_.restartSimulation();
    showState();
}

void TransportRow::OnPlayBtn() {
    if (playBtn_->isChecked()) {
        simulation_.play();
    } else {
        simulation_.pause();
    }
    showState();
}

void TransportRow::OnStepBtn() {
    simulation_.step();
    showState();
}

// Without a frame to loop to, the button is let go again.
void TransportRow::OnRepeatBtn() {
    if (repeatBtn_->isChecked() && simulation_.frame() > 0) {
        simulation_.repeat();
        emit noteChanged(tr("End Loop Frame: %1").arg(simulation_.repeatEndFrame()));
    } else {
        simulation_.restartSimulation();
        emit noteChanged(tr("End Loop Frame: 0"));
    }
    showState();
}

void TransportRow::showState() {
    const bool repeats = simulation_.isRepeating();
    playBtn_->setChecked(simulation_.isPlaying() && !repeats);
    repeatBtn_->setChecked(repeats);
    if (wasRepeating_ && !repeats) {
        emit noteChanged(QString());
    }
    wasRepeating_ = repeats;
}

} // namespace jostle
