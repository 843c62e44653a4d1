#include "oracle/MachineTexts.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

#include "oracle/Reports.h"

namespace corvane::oracle {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> all;
    for (std::string word; stream >> word;)
        all.push_back(word);
    return all;
}

/// Reads "{...}" at the position, which moves behind it.
std::string braced(const std::string& text, std::size_t& at) {
    const auto end = text.find('}', at);
    if (text[at] != '{' || end == std::string::npos) throw std::runtime_error("braces are missing");
    auto inside = text.substr(at + 1, end - at - 1);
    at = end + 1;
    return inside;
}

std::string repeated(const std::string& line, std::size_t& at) {
    at += std::string_view("repeat").size();
    const auto count = std::stoul(braced(line, at));
    auto what = braced(line, at);
    for (auto end = what.find("\\n"); end != std::string::npos; end = what.find("\\n"))
        what.replace(end, 2, "\n");
    std::string text;
    for (unsigned long i = 0; i < count; ++i)
        text += what;
    return text;
}

/// The line with \t, \r, \xHH, \\, \repeat{N}{TEXT} (there also \n) in their places. "\c" at its end: without
/// a newline.
std::string unescaped(const std::string& line) {
    std::string text;
    for (std::size_t i = 0; i < line.size();) {
        const char c = line[i++];
        if (c != '\\' || i == line.size()) {
            text += c;
            continue;
        }
        const char escape = line[i++];
        if (escape == 'c' && i == line.size()) return text;
        if (escape == 'x') {
            text += static_cast<char>(std::stoi(line.substr(i, 2), nullptr, 16));
            i += 2;
        } else if (line.compare(i - 1, 6, "repeat") == 0) {
            text += repeated(line, --i);
        } else {
            text += escape == 't' ? '\t' : escape == 'r' ? '\r' : escape;
        }
    }
    return text + "\n";
}

/// Reads one file of machines line by line.
class Reader {
public:
    Reader(std::map<std::string, std::string>& texts, std::vector<Machine>& machines)
        : texts_(texts), machines_(machines) {}

    void read(const std::string& path) {
        std::ifstream stream(path, std::ios::binary);
        int number = 0;
        content_ = nullptr;
        for (std::string line; std::getline(stream, line);) {
            ++number;
            try {
                readLine(line);
            } catch (const std::exception& failure) {
                throw std::runtime_error(path + ":" + std::to_string(number) + ": " + failure.what());
            }
        }
    }

private:
    void readLine(const std::string& line) {
        if (!line.starts_with('@')) return addLine(line);
        content_ = nullptr;
        const auto space = std::min(line.find(' '), line.size());
        const auto key = line.substr(1, space - 1);
        const auto rest = space == line.size() ? "" : line.substr(space + 1);
        if (key == "#" || key.empty()) return;
        if (key == "text") return startText(words(rest));
        if (key == "machine") return startMachine(rest);
        if (machines_.empty()) throw std::runtime_error("no machine has begun");
        describe(machines_.back(), key, rest);
    }

    void describe(Machine& machine, const std::string& key, const std::string& rest) {
        if (key == "about")
            machine.about += (machine.about.empty() ? "" : " ") + rest;
        else if (key == "core")
            machine.isCore = true;
        else if (key == "window")
            machine.isForWindow = true;
        else if (key == "broken")
            machine.isBroken = true;
        else if (key == "refuses" || key == "mayRefuse")
            addRefusal(machine, rest, key == "refuses");
        else if (key == "verdict")
            machine.verdict.push_back(rest);
        else if (key == "never")
            machine.never.push_back(rest);
        else if (key == "path")
            machine.path = words(rest);
        else if (key == "complaint")
            machine.complaints.push_back(rest);
        else if (key == "file")
            startFile(machine.files, words(rest));
        else if (key == "after")
            startFile(machine.after, words(rest));
        else
            throw std::runtime_error("unknown: @" + key);
    }

    void addLine(const std::string& line) {
        if (!content_) {
            if (line.empty()) return;
            throw std::runtime_error("this belongs to no file: " + line);
        }
        const auto text = isEscaped_ ? unescaped(line) : line + "\n";
        const bool hasEnd = endsWithCr_ && text.ends_with('\n');
        *content_ += hasEnd ? text.substr(0, text.size() - 1) + "\r\n" : text;
    }

    void startText(const std::vector<std::string>& rest) {
        if (rest.empty()) throw std::runtime_error("a text has no name");
        auto& text = texts_[rest.front()];
        if (!text.empty()) throw std::runtime_error("there are two texts named " + rest.front());
        content_ = &text;
        setFlags({rest.begin() + 1, rest.end()});
    }

    void startMachine(const std::string& name) {
        if (!names_.insert(name).second) throw std::runtime_error("there are two machines named " + name);
        machines_.emplace_back();
        machines_.back().name = name;
        machines_.back().files = usualAccounts();
    }

    /// PATH = TEXT, PATH absent, or PATH [escaped] [crlf] [MODE] and the lines that follow.
    void startFile(Files& files, const std::vector<std::string>& rest) {
        if (rest.empty()) throw std::runtime_error("a file has no path");
        const auto& path = rest.front();
        if (rest.size() == 2 && rest[1] == "absent") return void(files.erase(path));
        const bool isSssd = path.starts_with("etc/sssd/");
        auto& file = files[path] = {"", static_cast<mode_t>(isSssd ? 0600 : 0644)};
        if (rest.size() >= 3 && rest[1] == "=") {
            for (std::size_t i = 2; i < rest.size(); ++i)
                file.content += textNamed(rest[i]);
            return;
        }
        content_ = &file.content;
        for (const auto& flag : setFlags({rest.begin() + 1, rest.end()}))
            file.mode = static_cast<mode_t>(std::stoul(flag, nullptr, 8));
    }

    const std::string& textNamed(const std::string& name) const {
        const auto found = texts_.find(name);
        if (found == texts_.end()) throw std::runtime_error("there is no text named " + name + " yet");
        return found->second;
    }

    /// What is left of the flags.
    std::vector<std::string> setFlags(std::vector<std::string> flags) {
        isEscaped_ = std::erase(flags, "escaped") != 0;
        endsWithCr_ = std::erase(flags, "crlf") != 0;
        return flags;
    }

    /// SCENE... because REGEX
    static void addRefusal(Machine& machine, const std::string& rest, bool isRequired) {
        const std::string separator = " because ";
        const auto at = rest.find(separator);
        if (at == std::string::npos) throw std::runtime_error("no reason is given");
        machine.refusals.push_back(
            {words(rest.substr(0, at)), rest.substr(at + separator.size()), isRequired});
    }

    std::map<std::string, std::string>& texts_;
    std::vector<Machine>& machines_;
    std::set<std::string> names_;
    std::string* content_ = nullptr;
    bool isEscaped_ = false;
    bool endsWithCr_ = false;
};

} // namespace

const Refusal* Machine::refusalOf(std::string_view scene) const {
    for (const auto& refusal : refusals)
        for (const auto& one : refusal.scenes)
            if (one == scene || one == "all") return &refusal;
    return nullptr;
}

Files usualAccounts() {
    return {{"etc/passwd",
             {"root:x:0:0:root:/root:/bin/bash\ndaemon:x:1:1:daemon:/usr/sbin:/usr/sbin/nologin\n"
              "alice:x:1000:1000:Alice Ash,,,:/home/alice:/bin/sh\n"}},
            {"etc/group",
             {"root:x:0:\ndaemon:x:1:\nwheel:x:10:alice,root\nsudo:x:27:alice\nstaff:x:50:alice\n"
              "alice:x:1000:\n"}},
            {"etc/shadow", {"root:*:19700:0:99999:7:::\nalice:!:19700:0:99999:7:::\n", 0640}},
            {"etc/gshadow", {"root:*::\nsudo:*::alice\n", 0640}},
            {"etc/netgroup", {"local-crew (,alice,)\n"}},
            {"etc/os-release", {"NAME=\"Debian\"\nVERSION_ID=\"12\"\n"}}};
}

std::vector<Machine> machinesIn(const std::string& folder) {
    std::set<std::string> paths;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".machine") paths.insert(entry.path().string());
    std::map<std::string, std::string> texts;
    std::vector<Machine> machines;
    Reader reader(texts, machines);
    for (const auto& path : paths)
        reader.read(path);
    return machines;
}

} // namespace corvane::oracle
