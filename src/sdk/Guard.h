#pragma once

#include <exception>
#include <string>

#include "Object.h"

#pragma GCC visibility push(hidden)

/// No exception may cross the boundary. What a plug-in throws is reported to the host instead.
namespace corvane::sdk {

inline void reportFailure(const CorvaneHost* host, const char* operation, const char* reason) noexcept {
    if (host != nullptr && host->pluginFailed != nullptr)
        host->pluginFailed(host->context, operation, reason);
}

/// With the error's reason, which says where a form's description is wrong.
inline void reportFailure(const CorvaneHost* host, const char* operation, const CallError& error) noexcept {
    try {
        std::string all = error.what();
        if (!error.reason().empty()) all += " " + error.reason();
        if (all.ends_with('.')) all.pop_back(); // the host goes on with the sentence
        reportFailure(host, operation, all.c_str());
    } catch (...) { // out of memory: the description has to do
        reportFailure(host, operation, error.what());
    }
}

/// Runs `body`; what it throws becomes a report to the host and the answer `otherwise`.
template <typename Result, typename Body>
Result guard(const CorvaneHost* host, const char* operation, Result otherwise, Body body) noexcept {
    try {
        return body();
    } catch (const CallError& failure) {
        reportFailure(host, operation, failure);
    } catch (const std::exception& failure) {
        reportFailure(host, operation, failure.what());
    } catch (...) {
        reportFailure(host, operation, "an unknown exception");
    }
    return otherwise;
}

} // namespace corvane::sdk
#pragma GCC visibility pop
