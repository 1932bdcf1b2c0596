#include "CorvaneSettings/PreviewReadings.h"

#include <cmath>

namespace corvane {

namespace {

// The length of the agent's CPU history.
constexpr int historyLength = 36;

}  // namespace

PreviewReadings::PreviewReadings()
    : cores{0.62, 0.48, 0.71, 0.35, 0.18, 0.09, 0.22, 0.12}, fastCores{true,  true,  true,  true,
                                                                       false, false, false, false} {
    // A gentle wave, so that the "wave" style shows its curve.
    for (int index = 0; index < historyLength; ++index) {
        history.push_back(0.3 + 0.18 * std::sin(index / 4.0) + 0.06 * std::sin(index * 1.3));
    }
}

}  // namespace corvane
