#pragma once

#include <functional>
#include <string_view>

namespace corvane::toolkit {

class Window;

/// A message with buttons. The first button added is the default one. An alert is answered once.
class Alert {
public:
    /// The answer of an alert that was closed without a button.
    static constexpr int closed = 0;

    virtual ~Alert() = default;
    virtual void setMessageText(std::string_view text) = 0;
    virtual void setInformativeText(std::string_view text) = 0;
    /// What is read out instead of the informative text to those who don't see what the alert is about.
    virtual void setSpokenText(std::string_view text) = 0;
    virtual void addButton(std::string_view title) = 0;
    /// Blocks until answered: the button's number counting from 1, or `closed`.
    [[nodiscard]] virtual int runModal() = 0;
    /// Runs as a sheet on `parent` and returns at once; `ended` gets the answer, once, after which the alert
    /// takes itself off the screen. The alert may be destroyed from inside `ended`.
    virtual void beginSheet(Window& parent, std::function<void(int answer)> ended) = 0;
};

} // namespace corvane::toolkit
