#include "searchpolicy/NodeName.h"

#include "util/Exceptions.h"

namespace corvane::searchpolicy {

std::string connectorOfNode(const std::string& nodeName) {
    const auto first = nodeName.find('/');
    if (first == std::string::npos)
        throw util::RangeException("the node name \"" + nodeName + "\" names no connector");
    const auto second = nodeName.find('/', first + 1);
    return nodeName.substr(first + 1, second == std::string::npos ? second : second - first - 1);
}

} // namespace corvane::searchpolicy
