#pragma once

#include <QWidget>

#include <memory>

#include "CorvaneAgent/UI/PanelSource.h"

namespace corvane {

/// The memory panel: pressure, composition, the processes using the most, swap and paging.
/// Follows the model while it lives. Main thread only.
class MemoryDetailView final : public QWidget, private DetailPanelBase {
public:
    MemoryDetailView(std::unique_ptr<PanelSource> source, PanelContext context,
                     QWidget* parent = nullptr);

private:
    PanelContext context;
};

}  // namespace corvane
