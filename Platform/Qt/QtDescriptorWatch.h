#pragma once

#include <functional>

#include "Foundation/Subscription.h"

namespace corvane {

/// Calls `onReadable` from Qt's event loop whenever `fd` has input, until the subscription
/// ends (which may happen inside `onReadable`): a socket notifier that goes when the
/// subscription does. Main thread, inside a QCoreApplication's lifetime.
Subscription watchDescriptor(int fd, std::function<void()> onReadable);

}  // namespace corvane
