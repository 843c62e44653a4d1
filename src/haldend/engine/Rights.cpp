#include "haldend/engine/Rights.h"

#include <sys/random.h>

#include <algorithm>
#include <cerrno>

namespace corvane::haldend {
namespace {

bool fillRandomly(util::AuthorizationExternalForm& form) {
    std::size_t filled = 0;
    while (filled < form.bytes.size()) {
        const auto count = ::getrandom(form.bytes.data() + filled, form.bytes.size() - filled, 0);
        if (count < 0 && errno != EINTR) return false;
        if (count > 0) filled += static_cast<std::size_t>(count);
    }
    return true;
}

/// Takes the same time wherever the bytes differ.
bool equalInConstantTime(util::BytesView a, util::BytesView b) {
    if (a.size() != b.size()) return false;
    unsigned difference = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        difference |= static_cast<unsigned>(a[i] ^ b[i]);
    return difference == 0;
}

} // namespace

Rights::Ref Rights::open() {
    const std::lock_guard lock(mutex_);
    entries_[++last_];
    return last_;
}

void Rights::close(Ref ref) {
    const std::lock_guard lock(mutex_);
    entries_.erase(ref);
}

void Rights::grant(Ref ref, const Names& names) {
    const std::lock_guard lock(mutex_);
    if (const auto found = entries_.find(ref); found != entries_.end())
        found->second.rights.insert(names.begin(), names.end());
}

void Rights::destroy(Ref ref) {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(ref);
    if (found == entries_.end()) return;
    found->second.rights.clear();
    found->second.token.clear();
    found->second.isMinted = false;
}

bool Rights::holds(Ref ref, const Names& names) const {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(ref);
    return found != entries_.end() && std::ranges::includes(found->second.rights, names);
}

bool Rights::externalForm(Ref ref, util::AuthorizationExternalForm& form) {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(ref);
    if (found == entries_.end()) return false;
    auto& entry = found->second;
    if (!entry.isMinted) entry.isMinted = fillRandomly(entry.token);
    if (!entry.isMinted) return false;
    form = entry.token;
    return true;
}

bool Rights::permits(util::BytesView form, std::string_view right) const {
    const std::lock_guard lock(mutex_);
    bool permitted = false;
    for (const auto& [ref, entry] : entries_) {
        const bool isThis = equalInConstantTime(form, entry.token.view());
        if (isThis && entry.isMinted && entry.rights.contains(right)) permitted = true;
    }
    return permitted;
}

} // namespace corvane::haldend
