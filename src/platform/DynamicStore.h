#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvane::platform {

/// A listener's connection to the store of the machine's changing state.
class DynamicStoreSession {
public:
    virtual ~DynamicStoreSession() = default;
    /// Watches exactly these keys. False when that can't be done.
    [[nodiscard]] virtual bool setNotificationKeys(const std::vector<std::string>& keys) = 0;
    /// Delivers changes of the watched keys through the main run loop for the rest of the process. The run
    /// loop keeps the session alive from here on; the caller may drop it.
    virtual void addToRunLoop() = 0;
};

class DynamicStore {
public:
    virtual ~DynamicStore() = default;
    /// Opens a session; `callback` runs on the main thread after each change. Null when there is no store.
    [[nodiscard]] virtual std::shared_ptr<DynamicStoreSession> create(const std::string& name,
                                                                      std::function<void()> callback) = 0;
};

} // namespace corvane::platform
