#pragma once

#include <QWidget>

#include <memory>

#include "CorvaneAgent/UI/PanelSource.h"

namespace corvane {

/// The sensors panel: the thermal state, the temperature groups, and, when the machine has
/// them, the battery, the power channels and the fans. Follows the model while it lives. Main
/// thread only.
class SensorsDetailView final : public QWidget, private DetailPanelBase {
public:
    SensorsDetailView(std::unique_ptr<PanelSource> source, PanelContext context,
                      QWidget* parent = nullptr);

private:
    PanelContext context;
};

}  // namespace corvane
