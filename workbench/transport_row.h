#pragma once

#include "editing/simulation_view.h"

#include <QToolButton>
#include <QWidget>

class QHBoxLayout;

namespace jostle {

/// The buttons that run the simulation: restart, play, step, repeat.
class TransportRow final : public QWidget {
    Q_OBJECT

public:
    /// @param simulation  must outlive the row
    explicit TransportRow(SimulationView& simulation, QWidget* parent = nullptr);

public slots:
    void OnRestartBtn();
    void OnPlayBtn();
    void OnStepBtn();
    void OnRepeatBtn();
    /// What the keys do: as a click on the button.
    void OnPlayShortcut() { playBtn_->click(); }
    void OnRepeatShortcut() { repeatBtn_->click(); }

signals:
    /// What the note beside the tools is to say.
    void noteChanged(const QString& note);

private:
    QToolButton* addButton(QHBoxLayout& row, const char* name, const QIcon& icon, const QString& tip);
    void showState();

    SimulationView& simulation_;
    QToolButton* restartBtn_;
    QToolButton* playBtn_;
    QToolButton* stepBtn_;
    QToolButton* repeatBtn_;
    bool wasRepeating_ = false;
};

} // namespace jostle
