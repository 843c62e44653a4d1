#pragma once

#include <memory>
#include <string>
#include <vector>

#include "haldend/files/SssdFile.h"

namespace corvane::haldend {

/// Reads configurations of SSSD and keeps the last one: a change asks for the same text several times. Main
/// thread.
class SssdFileReader {
public:
    /// As the constructor of `SssdFile`; the one that was read before where nothing differs from it. Throws
    /// `Failure`.
    [[nodiscard]] std::shared_ptr<const SssdFile> read(std::string text, std::vector<SssdSnippet> snippets,
                                                       const std::string& path);

private:
    std::shared_ptr<const SssdFile> last_;
};

} // namespace corvane::haldend
