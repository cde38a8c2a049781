#pragma once

#include <string_view>

namespace hc {

using ErrorHandler = void (*)(const char* function, const char* message);

// Replaces the process-wide handler; null restores the default (one line on stderr).
void SetErrorHandler(ErrorHandler handler);

// Reports a failed call through the handler, naming the C function being served.
void ReportError(std::string_view message);

// Names the C function on whose behalf the database works, for the length of one call. Nested
// scopes keep the outermost name: the user called that one.
class ApiScope {
public:
    explicit ApiScope(const char* function);
    ~ApiScope();
    ApiScope(const ApiScope&) = delete;
    ApiScope& operator=(const ApiScope&) = delete;

private:
    const char* m_previous;
};

// Keeps reports back for the length of a scope: for questions whose "no" is an answer.
class ErrorSilence {
public:
    ErrorSilence();
    ~ErrorSilence();
    ErrorSilence(const ErrorSilence&) = delete;
    ErrorSilence& operator=(const ErrorSilence&) = delete;
};

} // namespace hc
