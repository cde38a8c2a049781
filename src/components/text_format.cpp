#include "components/text_format.h"

#include <cstdarg>
#include <cstdio>

namespace obsidra::components {

void AppendFormat(std::string& out, const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    std::va_list measure;
    va_copy(measure, args);
    const int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (length > 0) {
        const std::size_t start = out.size();
        out.resize(start + static_cast<std::size_t>(length) + 1);
        std::vsnprintf(out.data() + start, static_cast<std::size_t>(length) + 1, format, args);
        out.resize(start + static_cast<std::size_t>(length));
    }
    va_end(args);
}

} // namespace obsidra::components
