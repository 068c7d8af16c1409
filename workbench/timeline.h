#pragma once

#include "editing/simulation_view.h"

#include <QWidget>

namespace jostle {

/// The frames of the composition from left to right, those simulated so far underlined. Pressed or dragged along, it
/// shows the frame under the pointer.
class Timeline final : public QWidget {
    Q_OBJECT

public:
    /// @param simulation  must outlive the timeline
    explicit Timeline(SimulationView& simulation, QWidget* parent = nullptr);

    /// The frame at its right end.
    [[nodiscard]] int lastFrame() const;
    /// The middle of a frame's mark, in its own pixels.
    [[nodiscard]] double xOfFrame(int frame) const;
    /// The nearest frame, of those that it shows.
    [[nodiscard]] int frameAt(double x) const;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void goToPointer(const QMouseEvent& event);
    void paintSimulated(QPainter& painter) const;
    void paintRuler(QPainter& painter) const;
    void paintPlayhead(QPainter& painter) const;

    SimulationView& simulation_;
    int wantedFrame_ = 0; ///< where the pointer was last
};

} // namespace jostle
