#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace corvane::fakes {

/// What happened, in order, written by all fakes of one test: "selectNode.reloadData".
class Journal {
public:
    void add(std::string entry) { entries_.push_back(std::move(entry)); }
    void clear() { entries_.clear(); }
    [[nodiscard]] const std::vector<std::string>& entries() const { return entries_; }
    [[nodiscard]] auto count(const std::string& entry) const { return std::ranges::count(entries_, entry); }
    [[nodiscard]] bool contains(const std::string& entry) const { return count(entry) > 0; }

    /// The entries among `wanted`, in the order in which they happened.
    [[nodiscard]] std::vector<std::string> only(const std::vector<std::string>& wanted) const {
        std::vector<std::string> found;
        std::ranges::copy_if(entries_, std::back_inserter(found), [&](const auto& entry) {
            return std::ranges::find(wanted, entry) != wanted.end();
        });
        return found;
    }

private:
    std::vector<std::string> entries_;
};

} // namespace corvane::fakes
