// A stand-in for libnvidia-ml.so.1 with two canned devices, built as a shared library so that
// NVMLStatisticsSource loads it exactly as it loads NVIDIA's.
#include "Platform/Linux/NVMLApi.h"

struct nvmlDevice_st {
    bool reportsUtilization;
    unsigned int busyPercent;
    unsigned long long usedBytes;
};

namespace {

// The first device cannot report utilisation (as under MIG partitioning); the second can.
nvmlDevice_st devices[] = {
    {false, 0, 1610612736ULL},
    {true, 42, 3221225472ULL},
};
constexpr unsigned int deviceCount = sizeof devices / sizeof devices[0];
constexpr auto invalidArgument = static_cast<nvmlReturn_t>(2);

}  // namespace

extern "C" {

nvmlReturn_t nvmlInit_v2(void) {
    return NVML_SUCCESS;
}

nvmlReturn_t nvmlShutdown(void) {
    return NVML_SUCCESS;
}

nvmlReturn_t nvmlDeviceGetCount_v2(unsigned int* count) {
    *count = deviceCount;
    return NVML_SUCCESS;
}

nvmlReturn_t nvmlDeviceGetHandleByIndex_v2(unsigned int index, nvmlDevice_t* device) {
    if (index >= deviceCount) {
        return invalidArgument;
    }
    *device = &devices[index];
    return NVML_SUCCESS;
}

nvmlReturn_t nvmlDeviceGetUtilizationRates(nvmlDevice_t device, nvmlUtilization_t* utilization) {
    if (!device->reportsUtilization) {
        return NVML_ERROR_NOT_SUPPORTED;
    }
    *utilization = {device->busyPercent, 0};
    return NVML_SUCCESS;
}

nvmlReturn_t nvmlDeviceGetMemoryInfo(nvmlDevice_t device, nvmlMemory_t* memory) {
    *memory = {8589934592ULL, 8589934592ULL - device->usedBytes, device->usedBytes};
    return NVML_SUCCESS;
}

}  // extern "C"
