#include "desktop/CommandLine.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace corvane::desktop {
namespace {

constexpr std::array panes = {"services", "search", "editor"};

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

/// Takes the value of an option out of "--name=value" or out of the word behind "--name".
class Words {
public:
    explicit Words(const std::vector<std::string>& words) : words_(words) {}
    [[nodiscard]] bool atEnd() const { return next_ == words_.size(); }
    [[nodiscard]] std::string take() { return words_[next_++]; }
    [[nodiscard]] std::optional<std::string> valueOf(const std::string& word) {
        if (const auto equals = word.find('='); equals != std::string::npos) return word.substr(equals + 1);
        if (atEnd() || words_[next_].starts_with("--")) return std::nullopt;
        return take();
    }
    void skipValue() {
        if (!atEnd() && !words_[next_].starts_with('-')) ++next_;
    }

private:
    const std::vector<std::string>& words_;
    std::size_t next_ = 0;
};

bool names(const std::string& word, std::string_view option) {
    return word == option || (word.starts_with(option) && word[option.size()] == '=');
}

/// Options of Qt's own begin with one dash (two are allowed for some) and most have a value behind them.
bool isQtOption(const std::string& word) {
    return word == "--platform" || word == "--style" || (word.starts_with('-') && !word.starts_with("--"));
}

void checkPane(CommandLine& line, bool named) {
    if (std::ranges::find(panes, line.pane) == panes.end())
        line.problem = "There is no pane \"" + line.pane + "\". Panes are services, search and editor.";
    else if (named && line.screenshot.empty())
        line.problem = "The option --pane goes together with --screenshot.";
}

} // namespace

CommandLine CommandLine::parse(const std::vector<std::string>& all) {
    CommandLine line;
    Words words(all);
    const auto takeValue = [&](const std::string& word, std::string& target) {
        if (const auto value = words.valueOf(word); value && !value->empty())
            target = *value;
        else
            line.problem = "The option " + word + " requires a value.";
    };
    bool paneIsNamed = false;
    while (!words.atEnd() && line.problem.empty()) {
        const auto word = words.take();
        if (word == "--help" || word == "-h")
            line.help = true;
        else if (names(word, "--machine"))
            takeValue(word, line.machineFolder);
        else if (names(word, "--screenshot"))
            takeValue(word, line.screenshot);
        else if (names(word, "--pane"))
            takeValue(word, line.pane), paneIsNamed = true;
        else if (isQtOption(word))
            words.skipValue();
        else if (word.starts_with("--"))
            line.problem = "There is no option \"" + word + "\".";
        else
            line.problem = "Unexpected argument \"" + word + "\"; a machine folder is given with --machine.";
    }
    if (line.problem.empty()) checkPane(line, paneIsNamed);
    return line;
}

std::string CommandLine::helpText() {
    return "Usage: corvane [OPTION]...\n"
           "\n"
           "Decides in one window how a machine uses directory services.\n"
           "\n"
           "  --machine DIR       the machine folder to work on; / is the machine itself (needs root).\n"
           "                      Without it: a private folder of yours, made on first use from what\n"
           "                      you may read of this machine\n"
           "  --screenshot FILE   show the window without a display, save a screenshot as FILE (PNG) and "
           "exit\n"
           "  --pane NAME         with --screenshot: the pane to show, one of services, search, editor\n"
           "  --help              show this text\n";
}

std::optional<std::string> missingDisplay(const CommandLine& commandLine,
                                          const std::vector<std::string>& words) {
    const bool platformChosen = std::ranges::any_of(
        words, [](const auto& word) { return word == "-platform" || word == "--platform"; });
    if (!commandLine.screenshot.empty() || platformChosen || isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") ||
        isSet("QT_QPA_PLATFORM"))
        return std::nullopt;
    return "Corvane needs a display and there is none here: neither DISPLAY nor WAYLAND_DISPLAY is set.\n"
           "  - over ssh, connect again with X forwarding:      ssh -X HOST\n"
           "  - or serve the window over VNC on port 5900:      QT_QPA_PLATFORM=vnc ./run\n"
           "  - or only save a picture of the window:           ./run --screenshot corvane.png\n";
}

std::string privateMachineFolder() {
    if (isSet("XDG_STATE_HOME")) return std::string(std::getenv("XDG_STATE_HOME")) + "/corvane/machine";
    const std::string home = isSet("HOME") ? std::getenv("HOME") : ".";
    return home + "/.local/state/corvane/machine";
}

} // namespace corvane::desktop
