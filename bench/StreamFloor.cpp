// The floor of `corvane-agent --stream`: a program that reads the files one refresh of the
// stream reads, at the same cadence, with plain open/read/close into a stack buffer, and prints
// nothing. Every refresh: CPU ticks, memory, pressure, load and uptime (and each zram device);
// every third: the process table (stat, statm and io of every process); every fifteenth: the
// root volume. bench/stream-cpu.sh runs it beside the agent and compares their processor time.
//
// Usage: corvane-stream-floor [INTERVAL_SECONDS] [--kept]
//   --kept keeps each process's descriptors between scans and rereads them with pread, as the
//   agent's process source does, for the floor of that method.

#include <dirent.h>
#include <fcntl.h>
#include <sys/statvfs.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

constexpr std::size_t bufferSize = 16384;
constexpr int processEvery = 3;
constexpr int storageEvery = 15;

volatile std::uint64_t checksum = 0;

void readFile(const char* path) {
    std::array<char, bufferSize> buffer;
    const int file = ::open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return;
    }
    const auto count = ::read(file, buffer.data(), buffer.size());
    ::close(file);
    if (count > 0) {
        checksum =
            checksum + static_cast<unsigned char>(buffer[static_cast<std::size_t>(count) / 2]);
    }
}

struct KeptFiles {
    std::array<int, 3> files{-1, -1, -1};
    std::uint64_t scan = 0;
};

const std::array<const char*, 3> processLeaves = {"stat", "statm", "io"};

void scanProcesses(bool kept, std::unordered_map<int, KeptFiles>& keptFiles, std::uint64_t scan) {
    std::array<char, bufferSize> buffer;
    DIR* listing = ::opendir("/proc");
    if (listing == nullptr) {
        return;
    }
    std::string path;
    while (const dirent* entry = ::readdir(listing)) {
        if (entry->d_name[0] < '1' || entry->d_name[0] > '9') {
            continue;
        }
        const int pid = std::atoi(entry->d_name);
        if (kept) {
            auto& files = keptFiles[pid];
            files.scan = scan;
            for (std::size_t leaf = 0; leaf < processLeaves.size(); ++leaf) {
                if (files.files[leaf] < 0) {
                    path = std::string("/proc/") + entry->d_name + "/" + processLeaves[leaf];
                    files.files[leaf] = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
                }
                if (files.files[leaf] >= 0 &&
                    ::pread(files.files[leaf], buffer.data(), buffer.size(), 0) > 0) {
                    checksum = checksum + static_cast<unsigned char>(buffer[0]);
                }
            }
            continue;
        }
        for (const char* leaf : processLeaves) {
            path = std::string("/proc/") + entry->d_name + "/" + leaf;
            readFile(path.c_str());
        }
    }
    ::closedir(listing);
    std::erase_if(keptFiles, [scan](auto& pair) {
        if (pair.second.scan == scan) {
            return false;
        }
        for (const int file : pair.second.files) {
            if (file >= 0) {
                ::close(file);
            }
        }
        return true;
    });
}

std::vector<std::string> zramDevices() {
    std::vector<std::string> devices;
    if (DIR* block = ::opendir("/sys/block")) {
        while (const dirent* entry = ::readdir(block)) {
            if (std::string_view(entry->d_name).starts_with("zram")) {
                devices.push_back(std::string("/sys/block/") + entry->d_name + "/mm_stat");
            }
        }
        ::closedir(block);
    }
    return devices;
}

}  // namespace

int main(int argc, char** argv) {
    double interval = 1.0;
    bool kept = false;
    for (int index = 1; index < argc; ++index) {
        if (std::string_view(argv[index]) == "--kept") {
            kept = true;
        } else {
            interval = std::atof(argv[index]);
        }
    }
    const auto zram = zramDevices();
    std::unordered_map<int, KeptFiles> keptFiles;
    timespec next{};
    ::clock_gettime(CLOCK_MONOTONIC, &next);
    const auto step = static_cast<long>(interval * 1e9);
    for (std::uint64_t refresh = 0;; ++refresh) {
        for (const char* path : {"/proc/stat", "/proc/meminfo", "/proc/vmstat",
                                 "/proc/pressure/memory", "/proc/loadavg", "/proc/uptime"}) {
            readFile(path);
        }
        for (const auto& device : zram) {
            readFile(device.c_str());
        }
        if (refresh % processEvery == 0) {
            scanProcesses(kept, keptFiles, refresh);
        }
        if (refresh % storageEvery == 0) {
            struct statvfs volume {};
            ::statvfs("/", &volume);
            readFile("/proc/self/mountinfo");
        }
        next.tv_nsec += step % 1000000000L;
        next.tv_sec += step / 1000000000L + next.tv_nsec / 1000000000L;
        next.tv_nsec %= 1000000000L;
        ::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, nullptr);
    }
}
