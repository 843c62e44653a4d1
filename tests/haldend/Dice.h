#pragma once

#include <random>
#include <string>
#include <vector>

namespace corvane::haldend::test {

/// Made-up input, decided by the seed alone and the same on every machine.
class Dice {
public:
    explicit Dice(unsigned long seed) : engine_(seed) {}
    /// 0 to `count` - 1.
    std::size_t below(std::size_t count) { return engine_() % count; }
    bool percent(std::size_t chance) { return below(100) < chance; }
    const std::string& oneOf(const std::vector<std::string>& choices) {
        return choices[below(choices.size())];
    }

private:
    std::mt19937_64 engine_;
};

} // namespace corvane::haldend::test
