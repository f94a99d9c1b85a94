#pragma once

#include <utility>

#include <unistd.h>

namespace quillon {

/// Owns a file descriptor and closes it. A negative number means that there is none.
class Descriptor
{
public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    Descriptor(Descriptor &&other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Descriptor()
    {
        if (fd_ >= 0)
            ::close(fd_);
    }
    explicit operator bool() const { return fd_ >= 0; }
    int get() const { return fd_; }

private:
    int fd_;
};

} // namespace quillon
