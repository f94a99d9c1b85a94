#pragma once

#include "base/Require.h"

#include <cstdio>
#include <string>

namespace quillon {

/// A stream whose text can be read back.
class CapturedOutput
{
public:
    CapturedOutput() { require(stream_ != nullptr, "a temporary file can be made"); }
    ~CapturedOutput() { std::fclose(stream_); }
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    std::FILE *stream() { return stream_; }
    /// Returns everything written since the last call.
    std::string take()
    {
        std::fflush(stream_);
        const long end = std::ftell(stream_);
        std::fseek(stream_, taken_, SEEK_SET);
        std::string text(static_cast<std::size_t>(end - taken_), '\0');
        require(std::fread(text.data(), 1, text.size(), stream_) == text.size(),
                "what was written can be read");
        taken_ = end;
        std::fseek(stream_, 0, SEEK_END);
        return text;
    }

private:
    std::FILE *stream_ = std::tmpfile();
    long taken_ = 0;
};

} // namespace quillon
