#pragma once

#include <QWidget>

#include <memory>

#include "CorvaneAgent/UI/PanelSource.h"

namespace corvane {

/// The storage panel: the start-up volume's name, free space, fill, capacity and throughput, then
/// the processes reading and writing the most. Follows the model while it lives. Main thread
/// only.
class StorageDetailView final : public QWidget, private DetailPanelBase {
public:
    StorageDetailView(std::unique_ptr<PanelSource> source, PanelContext context,
                      QWidget* parent = nullptr);

private:
    PanelContext context;
};

}  // namespace corvane
