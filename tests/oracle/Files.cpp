#include "oracle/Files.h"

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

namespace corvane::oracle {
namespace {

namespace fs = std::filesystem;

std::string read(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    if (!stream) throw std::runtime_error(path + " can't be read");
    return text.str();
}

/// Control characters in a form that can be read.
std::string visible(const std::string& line) {
    std::string text;
    if (line.size() > 240)
        return visible(line.substr(0, 200)) + " ... (" + std::to_string(line.size()) + " bytes)";
    for (const char c : line) {
        if (c == '\r')
            text += "\\r";
        else if (c == '\t')
            text += "\\t";
        else
            text += c;
    }
    return text;
}

std::string lines(const std::string& sign, const std::string& content) {
    std::istringstream stream(content);
    std::string text;
    int count = 0;
    for (std::string line; std::getline(stream, line);) {
        if (++count > 12) return text + "      " + sign + " and more lines\n";
        text += "      " + sign + visible(line) + "\n";
    }
    return text;
}

/// The lines of one content that the other hasn't.
std::string missingLines(const std::string& from, const std::string& in) {
    std::multiset<std::string> known;
    std::istringstream others(in), own(from);
    for (std::string line; std::getline(others, line);)
        known.insert(line);
    std::string text;
    for (std::string line; std::getline(own, line);)
        if (const auto found = known.find(line); found != known.end())
            known.erase(found);
        else
            text += line + "\n";
    return text;
}

std::string changedLines(const std::string& before, const std::string& after) {
    const auto text = lines("-", missingLines(before, after)) + lines("+", missingLines(after, before));
    return text.empty() ? "      the order of lines, or the end of the last one\n" : text;
}

std::uint64_t hash(const std::string& text) {
    std::uint64_t value = 14695981039346656037U;
    for (const unsigned char c : text)
        value = (value ^ c) * 1099511628211U;
    return value;
}

} // namespace

Files filesBelow(const std::string& folder) {
    Files files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        struct stat status {};
        if (::stat(entry.path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
        const auto path = entry.path().string().substr(folder.size() + 1);
        files[path] = {read(entry.path()), static_cast<mode_t>(status.st_mode & 07777U)};
    }
    return files;
}

void writeFiles(const Files& files, const std::string& folder) {
    for (const auto& [path, file] : files) {
        const auto target = folder + "/" + path;
        fs::create_directories(fs::path(target).parent_path());
        std::ofstream stream(target, std::ios::binary);
        stream << file.content;
        stream.close();
        if (!stream || ::chmod(target.c_str(), file.mode) != 0)
            throw std::runtime_error(target + " can't be written");
    }
}

Files filesUnder(const Files& files, const std::string& prefix) {
    Files some;
    for (const auto& [path, file] : files)
        if (path.starts_with(prefix)) some[path] = file;
    return some;
}

std::string difference(const Files& before, const Files& after) {
    std::string text;
    for (const auto& [path, file] : before) {
        const auto now = after.find(path);
        if (now == after.end())
            text += "    " + path + " is gone\n";
        else if (now->second.content != file.content)
            text += "    " + path + ":\n" + changedLines(file.content, now->second.content);
        else if (now->second.mode != file.mode)
            text += "    " + path + " has another mode\n";
    }
    for (const auto& [path, file] : after)
        if (!before.contains(path)) text += "    " + path + " is new:\n" + lines("+", file.content);
    return text;
}

std::string contentOf(const Files& files, const std::string& path) {
    const auto found = files.find(path);
    return found == files.end() ? "" : found->second.content;
}

std::string keyOf(const Files& files) {
    std::ostringstream all;
    for (const auto& [path, file] : files)
        all << path << '\0' << file.mode << '\0' << file.content.size() << '\0' << file.content;
    std::ostringstream key;
    key << std::hex << hash(all.str()) << '-' << hash("again" + all.str());
    return key.str();
}

} // namespace corvane::oracle
