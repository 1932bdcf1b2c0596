#include "Platform/Qt/QtDescriptorWatch.h"

#include <QPointer>
#include <QSocketNotifier>

#include <utility>

namespace corvane {

Subscription watchDescriptor(int fd, std::function<void()> onReadable) {
    auto* notifier = new QSocketNotifier(fd, QSocketNotifier::Read);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier,
                     [onReadable = std::move(onReadable)] { onReadable(); });
    return Subscription([notifier = QPointer<QSocketNotifier>(notifier)] {
        if (notifier) {
            // It may be the one whose signal is being handled: it goes once the loop is back.
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
    });
}

}  // namespace corvane
