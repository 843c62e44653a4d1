#include "haldend/NsswitchFile.h"

#include "haldend/Failure.h"

namespace corvane::haldend {
namespace {

constexpr const char* grammar = "Nsswitch.lns";
constexpr const char* sssdDatabases = "database[. = 'passwd' or . = 'group' or . = 'shadow' or . = 'netgroup']";
constexpr const char* accountDatabases = "database[. = 'passwd' or . = 'group']";
constexpr const char* sssService = "/service[. = 'sss']";

void addSss(LensText& tree, const std::string& database) {
    if (!tree.matches(database + sssService).empty()) return;
    const auto files = tree.matches(database + "/service[. = 'files']");
    if (files.empty()) return tree.set(database + "/service[last()+1]", "sss");
    tree.insertAfter(files.front(), "service");
    tree.set(database + "/service[. = 'files'][1]/following-sibling::*[1]", "sss");
}

} // namespace

NsswitchFile::NsswitchFile(std::shared_ptr<Lenses> lenses, std::string text, std::string path)
    : lenses_(std::move(lenses)), text_(std::move(text)), path_(std::move(path)) {
    const LensText tree(*lenses_, grammar, text_, path_);
    usesSssd_ = !tree.matches(std::string(accountDatabases) + sssService).empty();
}

std::string NsswitchFile::textUsingSssd(bool wanted) const {
    LensText tree(*lenses_, grammar, text_, path_);
    if (wanted && tree.matches(accountDatabases).empty())
        throw Failure(halden::ErrorCode::storage, "The machine can't be told to look users up in a directory.",
                      path_ + " has no line that begins with \"passwd:\" or \"group:\".",
                      "Add the lines \"passwd: files\" and \"group: files\" to it and try again.");
    for (const auto& database : tree.matches(sssdDatabases)) {
        if (wanted) addSss(tree, database);
        else if (!tree.matches(database + sssService).empty()) tree.remove(database + sssService);
    }
    return tree.text();
}

} // namespace corvane::haldend
