#pragma once

// The few NVML declarations Corvane calls, written from NVIDIA's public NVML API reference so
// that building needs no NVIDIA package. NVML is never linked: NVMLStatisticsSource looks these
// names up in libnvidia-ml.so.1 at run time, and only their types are used here.

extern "C" {

typedef enum nvmlReturn_enum {
    NVML_SUCCESS = 0,
    NVML_ERROR_NOT_SUPPORTED = 3,
} nvmlReturn_t;

typedef struct nvmlDevice_st* nvmlDevice_t;

typedef struct nvmlUtilization_st {
    unsigned int gpu;     ///< percent of the last sample period in which a kernel ran
    unsigned int memory;  ///< percent of it in which device memory was read or written
} nvmlUtilization_t;

typedef struct nvmlMemory_st {
    unsigned long long total;  ///< bytes of device memory
    unsigned long long free;   ///< bytes not allocated
    unsigned long long used;   ///< bytes allocated or reserved
} nvmlMemory_t;

nvmlReturn_t nvmlInit_v2(void);
nvmlReturn_t nvmlShutdown(void);
nvmlReturn_t nvmlDeviceGetCount_v2(unsigned int* deviceCount);
nvmlReturn_t nvmlDeviceGetHandleByIndex_v2(unsigned int index, nvmlDevice_t* device);
nvmlReturn_t nvmlDeviceGetUtilizationRates(nvmlDevice_t device, nvmlUtilization_t* utilization);
nvmlReturn_t nvmlDeviceGetMemoryInfo(nvmlDevice_t device, nvmlMemory_t* memory);

}  // extern "C"
