#include "hc/error.h"

#include <cstdio>
#include <string>

namespace hc {

namespace {

void DefaultHandler(const char* function, const char* message) {
    std::fprintf(stderr, "%s: %s\n", function, message);
}

ErrorHandler g_handler = DefaultHandler;
const char* g_function = nullptr;
int g_silence = 0;

} // namespace

void SetErrorHandler(ErrorHandler handler) {
    g_handler = handler ? handler : DefaultHandler;
}

void ReportError(std::string_view message) {
    if (g_silence > 0) return;
    g_handler(g_function ? g_function : "hc", std::string(message).c_str());
}

ErrorSilence::ErrorSilence() {
    ++g_silence;
}

ErrorSilence::~ErrorSilence() {
    --g_silence;
}

ApiScope::ApiScope(const char* function) : m_previous(g_function) {
    if (!g_function) g_function = function;
}

ApiScope::~ApiScope() {
    g_function = m_previous;
}

} // namespace hc
