#pragma once

#include "simulation/scene.h"

#include <QObject>

#include <cstdint>
#include <vector>

namespace jostle {

/// Which bodies are selected, in the order in which they were. Preview and tables listen to it.
///
/// The flag in each record's user data follows it. Indices that name no record are left out.
class SelectionModel final : public QObject {
    Q_OBJECT

public:
    /// @param scene  must outlive the model
    explicit SelectionModel(Scene& scene, QObject* parent = nullptr) : QObject(parent), scene_(scene) {}

    /// Indices of records, the first selected first.
    [[nodiscard]] const std::vector<std::int32_t>& bodies() const { return bodies_; }
    [[nodiscard]] bool contains(std::int32_t body) const;

    /// These and no others.
    void setBodies(const std::vector<std::int32_t>& bodies);
    void clear() { setBodies({}); }
    /// Adds a body, or takes it away if it is selected.
    void toggle(std::int32_t body);

signals:
    void changed();

private:
    void markBodies();

    Scene& scene_;
    std::vector<std::int32_t> bodies_;
};

} // namespace jostle
