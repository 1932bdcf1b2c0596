#pragma once

#include <unistd.h>

#include <utility>

namespace corvane {

/// Owns an open file descriptor and closes it on every way out of a scope. Move-only.
class FileDescriptor {
public:
    FileDescriptor() = default;
    /// Takes `opened`, the result of open(2); a negative value holds nothing.
    explicit FileDescriptor(int opened) : descriptor(opened) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor(std::exchange(other.descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            descriptor = std::exchange(other.descriptor, -1);
        }
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { reset(); }

    int get() const { return descriptor; }
    bool isOpen() const { return descriptor >= 0; }
    void reset() {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        descriptor = -1;
    }

private:
    int descriptor = -1;
};

}  // namespace corvane
